#include "Varnet/platform/linux/PipeWireConnection.h"

#include "MeetingCore/base/Assert.h"
#include "Varnet/platform/AppInfo.h"

#include <cerrno>

namespace varnet {

namespace {

constexpr std::int64_t watchInterval = SPA_NSEC_PER_SEC / 2;

PipeWireConnection::Client& client(void* data) {
    return *static_cast<PipeWireConnection::Client*>(data);
}

Handle<pw_context, pw_context_destroy> newContext(pw_loop* loop) {
    Handle<pw_context, pw_context_destroy> context;
    // The configuration with real-time scheduling of the data thread; newer versions of PipeWire may drop it.
    for (const char* configuration : {"client-rt.conf", "client.conf"})
        if (!context)
            context.reset(pw_context_new(
                loop,
                pw_properties_new(PW_KEY_CONFIG_NAME, configuration, PW_KEY_APP_NAME, AppInfo::name().c_str(), nullptr),
                0));
    return context;
}

} // namespace

PipeWireConnection::PipeWireConnection(Client& owner) : m_client(owner) {
    pw_init(nullptr, nullptr);
    m_mainLoop.reset(pw_main_loop_new(nullptr));
    VARNET_ASSERT(m_mainLoop);
    m_loop = pw_main_loop_get_loop(m_mainLoop.get());
    m_stopEvent = pw_loop_add_event(
        m_loop, [](void* data, std::uint64_t) { static_cast<PipeWireConnection*>(data)->quit(); }, this);
    m_wakeEvent = pw_loop_add_event(m_loop, [](void* data, std::uint64_t) { client(data).onWake(); }, &m_client);
    m_watchTimer = pw_loop_add_timer(m_loop, [](void* data, std::uint64_t) { client(data).onWatch(); }, &m_client);
}

void PipeWireConnection::run() {
    pw_main_loop_run(m_mainLoop.get());
}

void PipeWireConnection::quit() {
    pw_main_loop_quit(m_mainLoop.get());
}

void PipeWireConnection::stop() {
    pw_loop_signal_event(m_loop, m_stopEvent);
}

void PipeWireConnection::wake() {
    pw_loop_signal_event(m_loop, m_wakeEvent);
}

PipeWireConnection::Outcome PipeWireConnection::connect() {
    m_context = newContext(m_loop);
    if (!m_context)
        return Outcome::noLibrary;
    m_core.reset(pw_context_connect(m_context.get(), nullptr, 0));
    if (!m_core)
        return errno == EACCES || errno == EPERM ? Outcome::refused : Outcome::noServer;
    listen();
    setWatchInterval(watchInterval);
    return Outcome::connected;
}

void PipeWireConnection::listen() {
    static constexpr pw_core_events coreEvents = [] {
        pw_core_events table{};
        table.version = PW_VERSION_CORE_EVENTS;
        table.done = [](void* data, std::uint32_t id, int sequence) {
            auto& self = *static_cast<PipeWireConnection*>(data);
            if (id != PW_ID_CORE || sequence != self.m_registrySync || self.m_registryKnown)
                return;
            self.m_registryKnown = true;
            self.m_client.onRegistryKnown();
        };
        table.error = [](void* data, std::uint32_t id, int, int result, const char* message) {
            static_cast<PipeWireConnection*>(data)->m_client.onError(id, -result, message);
        };
        return table;
    }();
    static constexpr pw_registry_events registryEvents = [] {
        pw_registry_events table{};
        table.version = PW_VERSION_REGISTRY_EVENTS;
        table.global = [](void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
                          const spa_dict* properties) {
            if (properties)
                client(data).onAdded(id, type, *properties);
        };
        table.global_remove = [](void* data, std::uint32_t id) { client(data).onRemoved(id); };
        return table;
    }();
    pw_core_add_listener(m_core.get(), &m_coreListener, &coreEvents, this);
    m_registry.reset(pw_core_get_registry(m_core.get(), PW_VERSION_REGISTRY, 0));
    pw_registry_add_listener(m_registry.get(), &m_registryListener, &registryEvents, &m_client);
    m_registrySync = pw_core_sync(m_core.get(), PW_ID_CORE, 0);
}

void PipeWireConnection::setWatchInterval(std::int64_t nanoseconds) {
    timespec interval{.tv_sec = 0, .tv_nsec = nanoseconds};
    pw_loop_update_timer(m_loop, m_watchTimer, &interval, &interval, false);
}

void PipeWireConnection::disconnect() {
    setWatchInterval(0);
    m_registry.reset();
    m_core.reset();
    m_context.reset();
    m_registryKnown = false;
}

} // namespace varnet
