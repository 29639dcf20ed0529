#include "Varnet/models/TranscriptFind.h"

#include "MeetingCore/base/Text.h"
#include "Varnet/models/FoundWords.h"
#include "Varnet/models/Text.h"
#include "Varnet/models/Theme.h"
#include "Varnet/models/TranscriptModel.h"

#include <QLocale>

#include <algorithm>

namespace varnet {

TranscriptFind::TranscriptFind(TranscriptModel& transcript, QObject* parent)
    : QObject(parent), m_transcript(transcript) {
    m_again.setSingleShot(true);
    m_again.setInterval(0);
    connect(&m_again, &QTimer::timeout, this, &TranscriptFind::look);
    connect(&transcript, &TranscriptModel::rowsInserted, this, &TranscriptFind::lookSoon); // below the others
    connect(&transcript, &TranscriptModel::rowsRemoved, this, &TranscriptFind::wordsChanged);
    connect(&transcript, &TranscriptModel::modelReset, this, &TranscriptFind::wordsChanged);
    connect(&transcript, &TranscriptModel::dataChanged, this,
            [this](const QModelIndex&, const QModelIndex&, const QList<int>& roles) {
                if (!roles.contains(TranscriptModel::MarkedRole))
                    wordsChanged();
            });
    for (const auto signal : {&Theme::appearanceChanged, &Theme::typeChanged})
        connect(&Theme::shared(), signal, this, [this] {
            m_transcript.mark({}, -1, 0);
            show();
        });
}

int TranscriptFind::row() const {
    return m_hits.empty() ? -1 : m_hits[m_current].row;
}

QString TranscriptFind::summary() const {
    if (m_lowerQuery.empty())
        return {};
    if (m_hits.empty())
        return tr("No matches");
    const QLocale locale;
    return tr("%1 of %2").arg(locale.toString(m_current + 1), locale.toString(m_hits.size()));
}

void TranscriptFind::begin(int row) {
    m_from = {std::max(0, row), 0};
    if (!std::exchange(m_open, true))
        Q_EMIT openChanged();
    look();
}

void TranscriptFind::close() {
    if (!std::exchange(m_open, false))
        return;
    m_query.clear();
    m_lowerQuery.clear();
    m_words.clear();
    look();
    Q_EMIT openChanged();
}

void TranscriptFind::setQuery(const QString& query) {
    if (!m_open || query == m_query)
        return;
    m_query = query;
    m_lowerQuery = lowerCased(toUtf8(query));
    look();
    if (!m_hits.empty())
        Q_EMIT found();
}

void TranscriptFind::step(int by) {
    if (m_hits.empty())
        return;
    const auto count = m_hits.size();
    m_current = (m_current + (by < 0 ? count - 1 : 1)) % count;
    m_from = m_hits[m_current];
    show();
    Q_EMIT found();
}

void TranscriptFind::wordsChanged() {
    m_words.clear();
    lookSoon();
}

void TranscriptFind::lookSoon() {
    if (m_open)
        m_again.start();
}

void TranscriptFind::look() {
    m_again.stop();
    m_hits.clear();
    if (!m_lowerQuery.empty()) {
        for (auto row = static_cast<int>(m_words.size()); row < m_transcript.count(); ++row)
            m_words.push_back(lowerCased(m_transcript.words(row)));
        for (int row = 0; row < m_transcript.count(); ++row)
            for (const auto place : FoundWords::places(m_words[row], m_lowerQuery))
                m_hits.push_back({row, place});
    }
    const auto first = std::ranges::lower_bound(m_hits, m_from);
    m_current = first == m_hits.end() ? 0 : static_cast<std::size_t>(first - m_hits.begin());
    show();
}

void TranscriptFind::show() {
    const bool any = !m_hits.empty();
    m_transcript.mark(any ? m_lowerQuery : std::string(), row(), any ? m_hits[m_current].place : 0);
    Q_EMIT changed();
}

} // namespace varnet
