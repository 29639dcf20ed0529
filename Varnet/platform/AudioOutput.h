#pragma once

#include <exception>
#include <filesystem>
#include <functional>
#include <memory>

namespace varnet {

/// Plays a mono 16-bit WAV file on the default output and tells what is heard at the moment. Main thread; no call
/// waits for the sound server or the disk.
///
/// Files are read and stretched ahead of time on a thread of its own. At the usual speed the samples reach the sound
/// server as they are in the file, apart from a few milliseconds of fading where the sound is taken up or broken off.
/// Changes of the default output are followed.
class AudioOutput {
public:
    /// Both come on the main thread, never inside a call, and only for what plays: not after a later `play` or `pause`.
    struct Callbacks {
        std::function<void()> onEnded;                    ///< the end of the file has been heard
        std::function<void(std::exception_ptr)> onFailed; ///< playback has stopped; a finished sentence
    };

    virtual ~AudioOutput() = default; ///< silence at once; no callback comes after it

    /// Plays the file from `position`, seconds from its start, in place of what plays, also of another place of the
    /// same file. `rate` is the speed, 0.5 to 2; the pitch stays. What cannot be played is reported through `onFailed`
    /// within about three seconds.
    virtual void play(const std::filesystem::path& wav, double position, double rate) = 0;

    /// Falls silent; the position stays where it was heard last.
    virtual void pause() = 0;

    /// The place of the file that is heard now, in seconds: what was handed to the sound server less what it has not
    /// yet played. Right after `play` it is that position.
    virtual double position() const = 0;
};

/// The playback of this platform. The sound server is asked for with the first `play`.
std::unique_ptr<AudioOutput> makeAudioOutput(AudioOutput::Callbacks callbacks);

} // namespace varnet
