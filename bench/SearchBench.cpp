// Times a keystroke in the search field over 50 MB of transcripts against glibc's memmem on the same bytes. Prints a
// table and fails when a limit is missed.

#include "MeetingCore/records/MeetingRepository.h"
#include "Varnet/models/LibraryModel.h"
#include "Varnet/store/MeetingStore.h"
#include "Varnet/store/SearchIndex.h"
#include "bench/Ratios.h"
#include "tests/support/TemporaryFolder.h"

#include <QGuiApplication>

#include <cstring>
#include <ctime>
#include <random>

namespace {

using namespace varnet;
using namespace varnet::bench;

constexpr int meetingCount = 500;
constexpr std::size_t bytesPerMeeting = 100'000;
constexpr std::size_t bytesPerTurn = 100;

/// Words as frequent as in speech: half of them are among the commonest, the others are made of English letters.
class Speaker {
public:
    std::string turn() {
        std::string text;
        while (text.size() < bytesPerTurn)
            (text += text.empty() ? "" : " ") += word();
        return text;
    }

private:
    std::string word() {
        static constexpr const char* common[] = {"the",  "to", "and", "that", "a",    "of",   "in",  "it",
                                                 "is",   "we", "I",   "you",  "for",  "have", "on",  "this",
                                                 "with", "be", "as",  "so",   "what", "not",  "are", "meeting"};
        static constexpr char letters[] = "eeeeeeeeeeeetttttttttaaaaaaaaoooooooiiiiiiinnnnnnnsssssshhhhhhrrrrrrdddd"
                                          "llllccuummwwffggyyppbbvk";
        if (m_random() % 2)
            return common[m_random() % std::size(common)];
        std::string made(2 + m_random() % 8, ' ');
        for (char& letter : made)
            letter = letters[m_random() % (sizeof letters - 1)];
        return made;
    }

    std::mt19937 m_random{7};
};

void fill(const std::filesystem::path& root) {
    const MeetingRepository repository(root);
    Speaker speaker;
    for (int i = 0; i < meetingCount; ++i) {
        auto meeting = Meeting::make("Weekly planning " + std::to_string(i));
        for (std::size_t turn = 0; turn < bytesPerMeeting / bytesPerTurn; ++turn)
            meeting.turns.push_back({Uuid::random(), 0, 1, "Speaker 1", speaker.turn(), {}});
        if (i == 321)
            meeting.turns[500].originalText += " We should ship the Zeppelin on Friday";
        repository.save(meeting);
    }
}

/// One query as it is typed: the library's rows against memmem over each meeting's bytes.
void search(LibraryModel& model, const std::vector<std::string_view>& texts, const char* what, const char* query,
            double limit) {
    const QString typed = QString::fromLatin1(query);
    double ours = 1e9, theirs = 1e9;
    for (int round = 0; round < 30; ++round) {
        model.setQuery({});
        const auto keystroke = [&] { model.setQuery(typed); };
        const auto memmems = [&] {
            for (const auto text : texts)
                keep(memmem(text.data(), text.size(), query, std::strlen(query)));
        };
        ours = std::min(ours, secondsOf(keystroke));
        theirs = std::min(theirs, secondsOf(memmems));
    }
    char against[64];
    std::snprintf(against, sizeof against, "memmem (%.2f ms; ours %.2f ms)", theirs * 1e3, ours * 1e3);
    row(what, against, ours / theirs, "x", ours / theirs <= limit, "<= 1.1 x");
}

/// Processor time that the main thread spends: the wait of the window on a machine that does nothing else.
template <class Work>
double busyMilliseconds(Work work) {
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    };
    const double begin = now();
    work();
    return now() - begin;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const test::TemporaryFolder folder;
    fill(folder / "meetings");
    MeetingStore store(folder / "meetings");
    LibraryModel model(store);

    // The first search of a run: the texts are put into lower case on the worker while the main thread stays free.
    const auto begin = std::chrono::steady_clock::now();
    double longest = busyMilliseconds([&] { model.setQuery(QStringLiteral("nothing has this")); });
    while (model.count() > 0)
        longest = std::max(longest, busyMilliseconds([] { QCoreApplication::processEvents(); }));
    const double whole = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();

    heading("search");
    std::vector<std::string_view> texts;
    for (const auto& meeting : store.meetings())
        texts.push_back(SearchIndex::shared().text(meeting));
    search(model, texts, "keystroke, a word of one meeting", "zeppelin", 1.1);
    search(model, texts, "keystroke, no hit", "quokka", 1.1);
    search(model, texts, "keystroke, two letters, no hit", "zq", 1.1);
    search(model, texts, "keystroke, a sentence", "we should ship the zeppelin on friday", 1.1);
    search(model, texts, "keystroke, common words, no hit", "the meeting is the", 1.1);
    search(model, texts, "keystroke, a word of every meeting", "the", 1.1);
    search(model, texts, "keystroke, one letter", "z", 1.1);
    std::printf("%-34s %-38s %8.2f ms\n", "main thread busy at a stretch", "(first search of a run)", longest);
    std::printf("%-34s %-38s %8.2f ms\n", "first results after", "(first search of a run)", whole * 1e3);
    return missed ? 1 : 0;
}
