#include "Varnet/platform/Autostart.h"
#include "Varnet/platform/FileBrowser.h"
#include "tests/support/Await.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>

namespace varnet::test {
namespace {

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(Desktop, AutostartIsWhatTheUsersEntrySays) {
    const TemporaryFolder configuration;
    const ScopedVariable home("XDG_CONFIG_HOME", configuration.path().string());
    const auto folder = configuration / "autostart", entry = folder / "org.varnet.Varnet.desktop";
    EXPECT_FALSE(Autostart::enabled());
    Autostart::setEnabled(true);
    EXPECT_TRUE(Autostart::enabled());
    struct stat status{};
    ASSERT_EQ(stat(entry.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644u);
    // This program is not the installed one, so it is named by its place.
    const auto program = QCoreApplication::applicationFilePath().toStdString();
    EXPECT_EQ(contentOf(entry), "[Desktop Entry]\nType=Application\nName=Zelvik\nGenericName=Meeting Recorder\n"
                                "Comment=Record meetings and read along, on this computer alone\n"
                                "Icon=org.varnet.Varnet\nStartupWMClass=Varnet\nTryExec=" +
                                    program + "\nExec=\"" + program + "\"\n");

    {
        const ScopedVariable path("PATH", configuration.path().string());
        std::filesystem::create_symlink(program, configuration / "varnet"); // as if it were installed
        Autostart::setEnabled(true);
        EXPECT_TRUE(contentOf(entry).ends_with("\nTryExec=varnet\nExec=varnet\n"));
    }

    const struct {
        const char* name;
        const char* entry;
        bool on;
    } rows[]{
        {"switched off by hand", "[Desktop Entry]\nExec=varnet\nHidden=true\n", false},
        {"switched off in the desktop's settings", "[Desktop Entry]\nX-GNOME-Autostart-enabled = false\n", false},
        {"switched on there again", "[Desktop Entry]\nX-GNOME-Autostart-enabled=true\nHidden=false\n", true},
        {"hidden is another group's", "[Desktop Entry]\nExec=varnet\n[Desktop Action a]\nHidden=true\n", true},
    };
    for (const auto& row : rows) {
        std::ofstream(entry) << row.entry;
        EXPECT_EQ(Autostart::enabled(), row.on) << row.name;
    }
    Autostart::setEnabled(false);
    EXPECT_FALSE(std::filesystem::exists(entry));
    Autostart::setEnabled(false); // nothing to take away is no failure
    const FileInTheWay file(folder);
    EXPECT_THROW(Autostart::setEnabled(true), FileFailure);
    EXPECT_FALSE(Autostart::enabled());
}

/// A file browser on the private bus.
class FileManager : public QDBusVirtualObject {
public:
    FileManager() {
        EXPECT_TRUE(bus.registerVirtualObject("/", this, QDBusConnection::SubPath));
        EXPECT_TRUE(bus.registerService("org.freedesktop.FileManager1"));
    }
    ~FileManager() override { QDBusConnection::disconnectFromBus(bus.name()); }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        asked = QVariantList{message.path(), message.member()} + message.arguments();
        return connection.send(message.createReply());
    }
    QString introspect(const QString&) const override { return {}; }

    QVariantList asked;

private:
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "files");
};

TEST(Desktop, FoldersAreShownByTheFileBrowser) {
    const TemporaryFolder parent;
    const auto folder = parent / "Treffen #1 ü";
    EXPECT_EQ(failureText(FileBrowser::show(folder)), "“Treffen #1 ü” could not be found.");
    std::filesystem::create_directory(folder);
    {
        FileManager manager;
        EXPECT_EQ(failureText(FileBrowser::show(folder)), "");
        const auto address = QString::fromStdString("file://" + parent.path().string() + "/Treffen%20%231%20%C3%BC");
        EXPECT_EQ(manager.asked,
                  (QVariantList{"/org/freedesktop/FileManager1", "ShowFolders", QStringList{address}, QString()}));
    }
    // Without one the handler of folders is asked: an xdg-open of this test's own.
    const ScopedVariable path("PATH", parent.path().string());
    const auto handler = parent / "xdg-open";
    EXPECT_EQ(failureText(FileBrowser::show(folder)),
              "No program here could show the folder “" + folder.string() + "”.");
    std::ofstream(handler) << "#!/bin/sh\nprintf %s \"$1\" >'" << (parent / "opened").string() << "'\n";
    std::filesystem::permissions(handler, std::filesystem::perms::owner_all);
    EXPECT_EQ(failureText(FileBrowser::show(folder)), "");
    EXPECT_EQ(contentOf(parent / "opened"), "file://" + parent.path().string() + "/Treffen%20%231%20%C3%BC");
}

} // namespace
} // namespace varnet::test
