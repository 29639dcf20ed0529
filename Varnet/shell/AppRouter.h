#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace varnet {

/// The whole navigation state: which page is up, and what the main window is asked to present. Main thread.
class AppRouter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one router")
    Q_PROPERTY(Page page READ page WRITE setPage NOTIFY pageChanged FINAL)
    Q_PROPERTY(bool showingLibrary READ showingLibrary NOTIFY pageChanged FINAL)
    Q_PROPERTY(bool showingMeeting READ showingMeeting NOTIFY pageChanged FINAL)
    Q_PROPERTY(bool showingDeleted READ showingDeleted NOTIFY pageChanged FINAL)
    Q_PROPERTY(bool historyOpen READ historyOpen WRITE setHistoryOpen NOTIFY historyOpenChanged FINAL)
    Q_PROPERTY(bool importing READ importing WRITE setImporting NOTIFY importingChanged FINAL)
    Q_PROPERTY(bool exporting READ exporting WRITE setExporting NOTIFY exportingChanged FINAL)
    Q_PROPERTY(bool settingsOpen READ settingsOpen WRITE setSettingsOpen NOTIFY settingsOpenChanged FINAL)
    Q_PROPERTY(QString retrying READ retrying WRITE setRetrying NOTIFY retryingChanged FINAL)
    Q_PROPERTY(int searchFocusRequest READ searchFocusRequest NOTIFY searchFocusRequestChanged FINAL)

public:
    enum class Page { library, deleted, meeting };
    Q_ENUM(Page)

    using QObject::QObject;

    Page page() const { return m_page; }
    void setPage(Page page);
    bool showingLibrary() const { return m_page == Page::library; }
    bool showingMeeting() const { return m_page == Page::meeting; }
    bool showingDeleted() const { return m_page == Page::deleted; }

    /// The versions of the selected meeting are presented. Turning to another page ends that.
    bool historyOpen() const { return m_historyOpen; }
    void setHistoryOpen(bool open);

    /// True asks the main window to present the audio file picker.
    bool importing() const { return m_importing; }
    void setImporting(bool importing);

    /// True asks the main window where the selected meeting shall be exported to.
    bool exporting() const { return m_exporting; }
    void setExporting(bool exporting);

    /// The settings are presented over whichever page is up.
    bool settingsOpen() const { return m_settingsOpen; }
    void setSettingsOpen(bool open);

    /// The id of the meeting for which is asked whether its audio shall be transcribed again; empty for none. Turning
    /// to another page ends that.
    QString retrying() const { return m_retrying; }
    void setRetrying(const QString& meeting);

    /// Every increment asks the library's search field to take focus.
    int searchFocusRequest() const { return m_searchFocusRequest; }
    void requestSearchFocus();

Q_SIGNALS:
    void pageChanged();
    void historyOpenChanged();
    void importingChanged();
    void exportingChanged();
    void settingsOpenChanged();
    void retryingChanged();
    void searchFocusRequestChanged();

private:
    Page m_page = Page::library;
    bool m_historyOpen = false;
    bool m_importing = false;
    bool m_exporting = false;
    bool m_settingsOpen = false;
    QString m_retrying;
    int m_searchFocusRequest = 0;
};

} // namespace varnet
