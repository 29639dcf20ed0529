#pragma once

#include "Varnet/capture/AudioFileConverter.h"

namespace varnet {

/// The conversion of audio files stands in a module of its own, "varnet-media.so". FFmpeg draws a hundred libraries
/// in, so the program loads it with the first file and not with each start. The module holds its own copy of all that
/// it uses; a failure that it throws is caught here as the type that it is.
using FileConversion = decltype(&convertFile);

/// What the module shows: a FileConversion.
inline constexpr auto fileConversionSymbol = "varnetFileConversion";

} // namespace varnet
