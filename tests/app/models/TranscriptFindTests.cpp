#include "Varnet/models/FoundWords.h"
#include "Varnet/models/TranscriptFind.h"
#include "Varnet/models/TranscriptModel.h"
#include "tests/support/Await.h"

#include <QAbstractItemModelTester>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

Meeting spoken(std::initializer_list<const char*> words) {
    auto meeting = Meeting::make("Planning");
    for (const auto* text : words)
        meeting.turns.push_back({Uuid::random(), 0, 1, "Speaker 1", text, {}});
    return meeting;
}

/// Marked text with its hits in square brackets, the one that stands out in braces.
std::string plain(QString marked) {
    marked.remove(QRegularExpression(QStringLiteral("^<p[^>]*>|</p>$")));
    marked.replace(QRegularExpression(QStringLiteral("<span style=\"[^\"]*background-color[^>]*>([^<]*)</span>")),
                   QStringLiteral("{\\1}"));
    marked.replace(QRegularExpression(QStringLiteral("<u>([^<]*)</u>")), QStringLiteral("[\\1]"));
    return marked.toStdString();
}

class Find : public ::testing::Test {
protected:
    void show(const Meeting& meeting) { transcript.show(meeting, meeting.turns, hues); }
    std::string marked(int row) const {
        return plain(transcript.data(transcript.index(row), TranscriptModel::MarkedRole).toString());
    }
    std::string summary() const { return find.summary().toStdString(); }

    SpeakerHues hues;
    TranscriptModel transcript;
    QAbstractItemModelTester tester{&transcript, QAbstractItemModelTester::FailureReportingMode::Fatal};
    TranscriptFind find{transcript};
};

} // namespace

TEST(FoundWords, AreMarkedAtTheirPlacesInEitherCaseAndAnyScript) {
    const struct {
        const char *text, *query;
        std::optional<std::size_t> current;
        const char* marked;
    } cases[] = {
        {"aaaaa", "aa", 2, "[aa]{aa}a"},
        {"two  blanks\nand a line", "and", {}, "two &nbsp;blanks<br>[and] a line"},
        {"ÄRGER, ärger", "ärger", 0, "{ÄRGER}, [ärger]"},
        {"Aİ and b", "b", 9, "Aİ and {b}"},          // İ has one byte more in lower case
        {"10 \u212A ok", "ok", 5, "10 \u212A {ok}"}, // the Kelvin sign two less
        {"<b> & a", "&", 4, "&lt;b&gt; {&amp;} a"},
    };
    for (const auto& [text, query, current, marked] : cases)
        EXPECT_EQ(plain(FoundWords::marked(text, query, current)), marked) << text;
}

TEST_F(Find, FollowsWordsThatChange) {
    auto meeting = spoken({"alpha", "beta", "alpha"});
    show(meeting);
    find.begin(2);
    find.setQuery("alpha");
    EXPECT_EQ(summary(), "2 of 2");
    find.step(1);
    EXPECT_EQ(summary(), "1 of 2");
    find.step(-1);
    meeting.turns[0].editedText = "gamma";
    meeting.turns.push_back({Uuid::random(), 0, 1, "Speaker 1", "Alphabet", {}});
    show(meeting);
    settle();
    EXPECT_EQ(summary(), "1 of 2");
    EXPECT_EQ(find.row(), 2);
    EXPECT_EQ(marked(0), "");
    EXPECT_EQ(marked(3), "[Alpha]bet");
    transcript.show(meeting, std::span(meeting.turns).first(2), hues);
    settle();
    EXPECT_EQ(summary(), "No matches");
}

} // namespace varnet::test
