#pragma once

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <cstddef>
#include <string>
#include <vector>

namespace varnet {

class TranscriptModel;

/// Looks for words in the transcript on display, as they are typed and in either case, and marks them in its rows. One
/// hit is the current one: `step` goes through them and round. Words that change are looked at again. Main thread; the
/// transcript must outlive it.
class TranscriptFind : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the meeting page")
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged FINAL)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY changed FINAL)
    Q_PROPERTY(int count READ count NOTIFY changed FINAL)
    Q_PROPERTY(int row READ row NOTIFY changed FINAL)
    Q_PROPERTY(QString summary READ summary NOTIFY changed FINAL)

public:
    explicit TranscriptFind(TranscriptModel& transcript, QObject* parent = nullptr);

    bool isOpen() const { return m_open; }
    QString query() const { return m_query; }
    void setQuery(const QString& query);
    int count() const { return static_cast<int>(m_hits.size()); } ///< hits in the whole transcript
    int row() const;                                              ///< of the current hit; -1 without one
    QString summary() const; ///< such as "3 of 12" or "No matches"; empty without a query

    /// Looks from that row of the transcript on.
    Q_INVOKABLE void begin(int row);
    /// Nothing is looked for or marked any more.
    Q_INVOKABLE void close();
    /// Goes to the next hit, or with -1 to the one before.
    Q_INVOKABLE void step(int by);

Q_SIGNALS:
    void openChanged();
    void changed();
    void found(); ///< there is a current hit to be brought into view: the user asked for it

private:
    /// Ordered as the words stand in the transcript.
    struct Hit {
        int row = 0;
        std::size_t place = 0; ///< in the row's words in lower case

        auto operator<=>(const Hit&) const = default;
    };

    void wordsChanged();
    void lookSoon();
    void look();
    void show();

    TranscriptModel& m_transcript;
    bool m_open = false;
    QString m_query;
    std::string m_lowerQuery;
    std::vector<std::string> m_words; ///< of each row, in lower case; empty until they are needed
    std::vector<Hit> m_hits;
    std::size_t m_current = 0; ///< an index into the hits
    Hit m_from;                ///< the first hit from here on becomes the current one
    QTimer m_again;            ///< many changes are looked at once
};

} // namespace varnet
