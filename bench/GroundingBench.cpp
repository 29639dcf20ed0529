// Times the rules that tie notes to a transcript against the encoding, hashing and searching that they cannot do
// without. Prints a table and fails when a limit is missed.

#include "MeetingCore/base/Sha256.h"
#include "MeetingCore/notes/DraftBuilder.h"
#include "MeetingCore/records/MeetingJson.h"
#include "bench/Ratios.h"

#include <cctype>
#include <random>

namespace {

using namespace varnet;

constexpr std::string_view promises[] = {"I will send the deck by Friday", "Ana will check the numbers by next Tuesday",
                                         "I'll ask the customers tomorrow"};

/// Talk of so many turns, the same in every run: 350 make an hour. Every third turn ends with a promise.
Meeting talk(int turnCount) {
    static constexpr std::string_view words[] = {"we",       "should", "the",    "quarter", "numbers", "and",
                                                 "décision", "before", "moving", "to",      "“done”",  "then",
                                                 "release",  "people", "I",      "think",   "yes",     "tomorrow"};
    std::mt19937 random(7);
    Meeting meeting;
    meeting.speakerNames.emplace()["Speaker 1"] = "Ana";
    unsigned hundredths = 0; // as recognisers count
    for (int index = 0; index < turnCount; ++index) {
        TranscriptTurn turn;
        turn.start = hundredths / 100.0;
        hundredths += 500 + static_cast<unsigned>(random() % 1'000);
        turn.end = hundredths / 100.0;
        turn.speaker = "Speaker " + std::to_string(1 + random() % 3);
        for (unsigned count = 1 + static_cast<unsigned>(random() % 50); count > 0; --count)
            turn.originalText.append(words[random() % std::size(words)]).append(" ");
        if (index % 3 == 0)
            turn.originalText += promises[random() % std::size(promises)];
        meeting.turns.push_back(std::move(turn));
    }
    return meeting;
}

/// Answers for the steps of a meeting, and the searches that nobody can check them without. Of ten points seven are
/// true, one names another source, one runs across two turns, and one says what nobody said, or not in these letters.
class Answers {
public:
    Answers(const DraftBuilder& builder, const Meeting& meeting)
        : m_sources(NoteGrounding::sources(meeting)), m_bySteps(builder.stepCount()) {
        for (const NoteSource& source : m_sources)
            m_texts.push_back(NoteGrounding::normalized(source.text));
        constexpr std::size_t pointCount = 200;
        for (std::size_t index = 0; index < pointCount; ++index) {
            const std::size_t step = index * 7 % m_bySteps.size();
            const auto [pass, group] = builder.step(step);
            const std::size_t first = std::stoul(group.front().id.substr(1)) - 1;
            addPoint(index, pass, std::min(first + index % group.size(), m_sources.size() - 2), m_bySteps[step].items);
        }
    }

    const std::vector<NoteResponse>& bySteps() const { return m_bySteps; }

    /// How many of the searches find something.
    std::size_t searchAll() const {
        std::size_t found = 0;
        for (const Search& search : m_searches)
            found += search.text.find(search.part) != std::string::npos ? 1 : 0;
        return found;
    }

    /// Draws up the notes.
    GeneratedNotes draft(const Meeting& meeting) const {
        DraftBuilder builder(meeting);
        for (std::size_t step = 0; step < m_bySteps.size(); ++step)
            builder.take(builder.step(step).pass, m_bySteps[step]);
        return std::move(builder).finish("a model", Date{});
    }

    void removeAssignments() {
        for (NoteResponse& answer : m_bySteps)
            for (NoteItem& item : answer.items)
                item.owner = item.due = std::nullopt;
    }

private:
    struct Search {
        std::string text, part;
    };

    void addPoint(std::size_t index, NotesPass pass, std::size_t at, std::vector<NoteItem>& items) {
        const bool isAction = pass == NotesPass::actions;
        at -= isAction ? at % 3 : 0;
        NoteItem& item = items.emplace_back();
        item.kind = isAction ? NoteItem::Kind::action : NoteItem::Kind::decision;
        item.text = "Point " + std::to_string(index);
        std::string quote = lastWords(m_texts[at], isAction);
        if (isAction) {
            item.owner = quote.starts_with("Ana") ? "Ana" : m_sources[at].speaker;
            item.due = quote.substr(quote.rfind(' ') + 1);
        }
        std::size_t named = at;
        switch (index % 10) {
        case 7:
            named -= std::min(at, 1 + index / 10 % 3);
            search(named, 1, quote);
            searchNearby(named, 1, quote, at);
            search(at, 1, quote);
            break;
        case 8:
            addStraddling(at, quote);
            break;
        case 9:
            if (index % 20 == 9)
                quote = "nobody has said anything of the kind in this whole meeting";
            else
                *std::ranges::find_if(quote, [](unsigned char c) { return std::isalpha(c); }) ^= ' '; // the other case
            addInvented(at, quote);
            break;
        default:
            search(at, 1, quote); // for the repair
            search(at, 1, quote); // for the check
        }
        if (isAction && index % 10 != 9)
            for (const std::string& part : {*item.due, quote.starts_with("Ana") ? "Ana" : quote.substr(0, 4)})
                m_searches.push_back({quote, part});
        item.evidence = {{m_sources[named].id, quote}};
    }

    /// The promise at the end of the text, or its last half dozen words.
    static std::string lastWords(const std::string& text, bool isPromise) {
        for (const std::string_view promise : promises)
            if (isPromise && text.ends_with(promise))
                return std::string(promise);
        return text.size() < 40 ? text : text.substr(text.find(' ', text.size() - 40) + 1);
    }

    /// Goes on into the next turn.
    void addStraddling(std::size_t at, std::string& quote) {
        const std::string first = quote, second = m_texts[at + 1].substr(0, m_texts[at + 1].find(' ', 30));
        quote += ' ' + second;
        search(at, 1, quote);
        searchNearby(at, 1, quote);
        searchNearby(at, 2, quote, at);
        search(at, 1, first);
        search(at + 1, 1, second);
    }

    void addInvented(std::size_t at, const std::string& quote) {
        search(at, 1, quote);
        for (std::size_t count = 1; count <= 4; ++count)
            searchNearby(at, count, quote);
        search(at, 1, quote);
    }

    /// In so many sources from there on, whose texts are joined already.
    void search(std::size_t at, std::size_t count, const std::string& quote) {
        Search search{m_texts[at], quote};
        for (std::size_t next = at + 1; next < at + count; ++next)
            search.text += ' ' + m_texts[next];
        m_searches.push_back(std::move(search));
    }

    /// In the runs of so many sources near the named one, the nearest first, up to the one that begins at `last`.
    void searchNearby(std::size_t named, std::size_t count, const std::string& quote, std::size_t last = SIZE_MAX) {
        for (const int distance : {0, -1, 1, -2, 2, -3, 3}) {
            const std::size_t start = named + static_cast<std::size_t>(distance); // wraps to beyond the end
            if (start < m_texts.size() && start + count <= m_texts.size())
                search(start, count, quote);
            if (start == last)
                return;
        }
    }

    std::vector<NoteSource> m_sources;
    std::vector<std::string> m_texts;
    std::vector<NoteResponse> m_bySteps;
    std::vector<Search> m_searches;
};

void benchHash() {
    const Meeting meeting = talk(700);
    const std::string bytes = encodeSources(NoteGrounding::sources(meeting));
    const auto [ours, theirs] = bench::compare([&] { return NoteGrounding::hash(NoteGrounding::sources(meeting)); },
                                               [&] {
                                                   const std::string copy = bytes;
                                                   bench::keep(copy);
                                                   return sha256(bytes);
                                               },
                                               1'001);
    bench::row("sources and hash of two hours", "SHA-256 and a copy of the same bytes", ours / theirs,
               bench::atMost(3, 2));
    bench::note("(kilobytes)", 1e-3 * static_cast<double>(bytes.size()), "KB");
    bench::note("(microseconds)", 1e6 * ours, "us");
}

void benchDraft() {
    constexpr int rounds = 301;
    const Meeting meeting = talk(1'500);
    const std::vector<NoteSource> sources = NoteGrounding::sources(meeting);
    Answers answers(DraftBuilder(meeting), meeting);
    const auto draft = [&] { return answers.draft(meeting); };
    const auto [ours, theirs] = bench::compare(
        draft,
        [&] {
            const std::string json = encodeSources(sources);
            bench::keep(answers.searchAll());
            return sha256(json);
        },
        rounds);
    bench::row("notes of four hours, 200 points", "one encoding, SHA-256, the searches", ours / theirs,
               bench::atMost(3, 2));
    const GeneratedNotes notes = draft();
    bench::note("(points that stand)", static_cast<double>(notes.items.size()), "");
    bench::note("(kilobytes of JSON)", 1e-3 * static_cast<double>(encodeSources(sources).size()), "KB");
    bench::note("(microseconds)", 1e6 * ours, "us");
    const auto [preparation, searches] =
        bench::compare([&] { return DraftBuilder(meeting); }, [&] { return answers.searchAll(); }, rounds);
    bench::note("(of it sources, chunks and hash)", 1e6 * preparation, "us");
    bench::note("(the other's searches alone)", 1e6 * searches, "us");
    answers.removeAssignments();
    const auto [unassigned, copies] = bench::compare(draft, [&] { return answers.bySteps(); }, rounds);
    bench::note("(owners and due dates)", 1e6 * (ours - unassigned), "us");
    bench::note("(copies of the answers)", 1e6 * copies, "us");
}

} // namespace

int main() {
    bench::heading("grounding");
    benchHash();
    benchDraft();
    return bench::missed ? 1 : 0;
}
