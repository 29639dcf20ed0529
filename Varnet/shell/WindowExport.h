#pragma once

#include "MeetingCore/base/Failures.h"
#include "Varnet/async/TaskScope.h"

#include <filesystem>

class QObject;
class QQuickWindow;

namespace varnet {

class MainWindow;
class VarnetApp;

/// Renders the main window to a PNG file, and the run of the program that does only that. Main thread; the application
/// object and the window must outlive it.
///
/// A picture has the window's size in pixels: its size times the scale. The toolkit learns the scale before the
/// application object is made, so a run has one.
class WindowExport {
public:
    class ExportError : public Failure {
    public:
        static ExportError windowUnavailable();
        static ExportError renderFailed();

    private:
        using Failure::Failure;
    };

    WindowExport(VarnetApp& app, MainWindow& window);

    /// Where the command line names a PNG: selects the meeting that it names, gives the screens three seconds, writes
    /// the picture, and ends the program, with exit status 1 if there is none. The picture is of the version history
    /// alone where that is asked for. A program that records or is busy stays up. Once.
    void exportWindowIfRequested();

    /// Writes a picture of the window, or of the dialog `sheet` of its own alone. Throws ExportError when another
    /// dialog is up or there is nothing to draw, and Failure, with the system's reason, when the file cannot be
    /// written.
    static void write(QQuickWindow& window, const QObject* sheet, const std::filesystem::path& file);

private:
    static Task<> run(WindowExport* self, std::stop_token stop);
    void exportWindow();

    VarnetApp& m_app;
    MainWindow& m_window;
    bool m_exportScheduled = false;
    TaskScope m_tasks{"Window export"};
};

} // namespace varnet
