#pragma once

#include "Varnet/platform/linux/PipeWireHandles.h"

#include <cstdint>
#include <string_view>

namespace varnet {

/// A connection of this program to PipeWire, and the loop that serves it.
///
/// The thread that calls `run` is the connection's: all calls of the client come on it, and all operations but `stop`
/// and `wake` belong to it, so nothing here needs a lock. `stop` and `wake` only signal the loop and never wait; `wake`
/// may also be called on PipeWire's real-time threads.
class PipeWireConnection {
public:
    /// What its owner is told. None of it throws.
    class Client {
    public:
        virtual void onWake() = 0;
        virtual void onWatch() = 0;         ///< twice a second while there is a connection
        virtual void onRegistryKnown() = 0; ///< all that the server had has been announced; once a connection
        virtual void onAdded(std::uint32_t id, std::string_view type, const spa_dict& properties) = 0;
        virtual void onRemoved(std::uint32_t id) = 0;
        /// `error` is an errno value; with PW_ID_CORE and EPIPE the server is gone. Not the place to disconnect.
        virtual void onError(std::uint32_t id, int error, const char* message) = 0;

    protected:
        ~Client() = default;
    };

    enum class Outcome {
        connected,
        noLibrary, ///< PipeWire's library could not be set up; errno says why
        refused,   ///< the server does not let this program in
        noServer,
    };

    /// The client must outlive it. There is no connection yet.
    explicit PipeWireConnection(Client& client);
    PipeWireConnection(const PipeWireConnection&) = delete;
    PipeWireConnection& operator=(const PipeWireConnection&) = delete;

    void run();  ///< serves the loop until `stop` or `quit`
    void quit(); ///< `run` returns after the present call of the client
    void stop(); ///< the same from any thread, also before `run`
    void wake(); ///< any thread: `onWake` follows

    Outcome connect();
    /// Takes the connection down, which may be none; its streams must be gone.
    void disconnect();

    pw_core* core() const { return m_core.get(); } ///< null without a connection
    bool isRegistryKnown() const { return m_registryKnown; }

private:
    void listen();
    void setWatchInterval(std::int64_t nanoseconds); ///< 0: no watch
    static void destroyRegistry(pw_registry* registry) { pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry)); }

    Client& m_client;
    Handle<pw_main_loop, pw_main_loop_destroy> m_mainLoop;
    pw_loop* m_loop;
    spa_source* m_stopEvent; ///< the loop frees its sources
    spa_source* m_wakeEvent;
    spa_source* m_watchTimer;
    Handle<pw_context, pw_context_destroy> m_context;
    Handle<pw_core, pw_core_disconnect> m_core;
    spa_hook m_coreListener{};
    Handle<pw_registry, destroyRegistry> m_registry;
    spa_hook m_registryListener{};
    int m_registrySync = 0;
    bool m_registryKnown = false;
};

} // namespace varnet
