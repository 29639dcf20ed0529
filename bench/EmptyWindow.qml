import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Controls.impl
import QtQuick.Layouts
import QtQuick.Templates as T

ApplicationWindow {
    height: 820
    visible: true
    width: 1280
}
