#include "Varnet/platform/Autostart.h"

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"
#include "Varnet/platform/AppInfo.h"
#include "Varnet/platform/Paths.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <filesystem>
#include <sstream>
#include <string>

namespace varnet::Autostart {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestEntry = 1 << 20;

fs::path entryFile() {
    return Paths::configuration() / "autostart" / (AppInfo::identifier() + ".desktop");
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r"), last = text.find_last_not_of(" \t\r");
    return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

/// Calls `take` with the key and the value of each line of an entry's main group.
template <class Take>
void forEachField(const std::string& entry, Take take) {
    std::istringstream lines(entry);
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('['))
            inside = trimmed(line) == "[Desktop Entry]";
        else if (const auto equals = line.find('='); inside && !line.starts_with('#') && equals != std::string::npos)
            take(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
}

/// A value as the entry's file format has it.
std::string escaped(const std::string& text) {
    std::string value;
    for (const char letter : text) {
        if (letter == '\n')
            value += "\\n";
        else
            value += letter == '\\' ? "\\\\" : std::string(1, letter);
    }
    return value;
}

/// One argument of a command line, whatever letters it has.
std::string quoted(const std::string& argument) {
    std::string quote = "\"";
    for (const char letter : argument) {
        if (std::string_view("\"`$\\").find(letter) != std::string_view::npos)
            quote += '\\';
        quote += letter == '%' ? "%%" : std::string(1, letter);
    }
    return quote + '"';
}

/// The program that runs: by its name where a shell finds this very file by it, else by its place.
struct Program {
    std::string place;
    std::string command;
};

Program runningProgram() {
    const auto running = QCoreApplication::applicationFilePath();
    const auto name = QStringLiteral("varnet");
    const auto found = QStandardPaths::findExecutable(name);
    std::error_code failure;
    if (!found.isEmpty() && fs::equivalent(found.toStdString(), running.toStdString(), failure))
        return {name.toStdString(), name.toStdString()};
    return {running.toStdString(), quoted(running.toStdString())};
}

/// What the installed entry says of the program, without what makes no sense at a login.
std::string entryText() {
    QFile installed(QStringLiteral(":/qt/qml/Varnet/org.varnet.Varnet.desktop"));
    if (!installed.open(QIODevice::ReadOnly))
        throw FileFailure::reading(installed.fileName().toStdString(), ENOENT);
    std::string text = "[Desktop Entry]\n";
    forEachField(installed.readAll().toStdString(), [&text](const std::string& key, const std::string& value) {
        for (const auto* kept : {"Type", "Name", "GenericName", "Comment", "Icon", "StartupWMClass"})
            if (key == kept || key.starts_with(std::string(kept) + '['))
                text.append(key).append("=").append(value).append("\n");
    });
    const auto program = runningProgram();
    // An entry outlives the program that it starts; with TryExec it is passed over then.
    return text.append("TryExec=" + escaped(program.place) + "\nExec=" + escaped(program.command) + '\n');
}

} // namespace

bool enabled() {
    try {
        bool on = true;
        forEachField(readFile(entryFile(), largestEntry), [&on](const std::string& key, const std::string& value) {
            // The second is where some desktops keep their own switch.
            on &= !(key == "Hidden" && value == "true") && !(key == "X-GNOME-Autostart-enabled" && value == "false");
        });
        return on;
    } catch (const FileFailure& failure) {
        if (failure.kind() != FileFailure::Kind::fileReadNoSuchFile)
            qWarning("Whether the program starts at login is not known: %s", failure.what());
        return false;
    }
}

void setEnabled(bool enabled) {
    const auto file = entryFile();
    if (enabled) {
        makePrivateDirectories(file.parent_path());
        writeFileAtomically(file, entryText(), 0644);
    } else if (std::error_code failure; !fs::remove(file, failure) && failure) {
        throw FileFailure::writing(file, failure.value());
    }
}

} // namespace varnet::Autostart
