#pragma once

#include "MeetingCore/base/Date.h"
#include "Varnet/store/MeetingPresentation.h"

#include <QDate>
#include <QString>

#include <optional>

namespace varnet {

class MeetingStore;
struct Meeting;

/// Words and numbers of one meeting that the library and the meeting page share. Main thread.
namespace MeetingText {

/// The index of a badge's colour in Theme.tones.
int tone(BadgeColor color);

/// The day in the local time zone.
QDate localDay(Date date);

/// The time of day in the user's short form; no line ends within it.
QString time(Date date);

/// Day and time of day, such as "Yesterday, Thursday, March 5 · 2:30 PM".
QString dayAndTime(Date date);

/// How long the recording is, as a clock; empty during its recording and when nothing tells. The audio decides; without
/// any, the end of the last turn.
QString duration(const Meeting& meeting, const MeetingStore& store);

/// The place of a level on a meter from 0 to 1: 60 decibels up to full scale. `level` is an RMS value from 0 to 1.
double meter(float level);

} // namespace MeetingText

} // namespace varnet
