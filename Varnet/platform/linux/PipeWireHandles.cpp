#include "Varnet/platform/linux/PipeWireHandles.h"

#include "Varnet/platform/AppInfo.h"

namespace varnet {

Handle<pw_context, pw_context_destroy> newPipeWireContext(pw_loop* loop) {
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

} // namespace varnet
