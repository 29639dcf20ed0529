#include "Varnet/store/LibrarySearch.h"
#include "Varnet/store/SearchIndex.h"

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

Meeting spoken(const std::string& title, const std::vector<std::string>& texts) {
    auto meeting = Meeting::make(title);
    for (const auto& text : texts)
        meeting.turns.push_back({Uuid::random(), 0, 1, "Speaker 1", text, {}});
    return meeting;
}

} // namespace

TEST(SearchIndex, LooksAgainAfterWhateverAReaderSeesHasChanged) {
    const auto original = spoken("Title", {"first", "middle", "last"});
    std::vector<Meeting> changed(4, original);
    changed[0].turns[1].editedText = "changed";
    changed[1].title = "changed";
    changed[2].turns.push_back(spoken("", {"changed"}).turns[0]);
    changed[3].turns = spoken("", {"changed", "b", "c"}).turns;
    for (const auto& meeting : changed) {
        SearchIndex index;
        EXPECT_FALSE(index.matches("changed", original));
        EXPECT_TRUE(index.matches("changed", meeting)) << meeting.title;
    }
}

TEST(SearchSnippet, ShowsTheHitAsItWasSpokenAmongItsWords) {
    const std::tuple<const char*, std::string, SearchSnippet> rows[] = {
        // The dotted capital is two bytes and becomes three; the Kelvin sign is three and becomes one.
        {"at", "İİ \u212A AT once", {"İİ \u212A ", "AT", " once"}},
        {"x", std::string(60, 'a') + "x", {"…" + std::string(48, 'a'), "x", ""}},
        {"x", "x" + std::string(239, 'a') + "ä", {"", "x", std::string(239, 'a') + "…"}},
    };
    for (const auto& [query, text, snippet] : rows)
        EXPECT_EQ(SearchSnippet::find(query, spoken("Ship", {"Hello", text})), snippet) << query << " in " << text;
}

} // namespace varnet::test
