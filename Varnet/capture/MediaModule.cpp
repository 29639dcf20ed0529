#include "Varnet/capture/MediaModule.h"

#include "Varnet/capture/AudioFailure.h"

#include <dlfcn.h>

namespace varnet {

namespace {

/// The module stays loaded. It lies where the program's run path says.
FileConversion loadConversion() {
    void* module = ::dlopen("varnet-media.so", RTLD_NOW | RTLD_LOCAL);
    const void* symbol = module ? ::dlsym(module, fileConversionSymbol) : nullptr;
    if (!symbol)
        throw AudioFailure(AudioFailure::Kind::conversion, ::dlerror());
    return *static_cast<const FileConversion*>(symbol);
}

} // namespace

void convertFile(const std::filesystem::path& source, const std::filesystem::path& target,
                 const std::function<void(double)>& onProgress, const std::stop_token& stop) {
    static const FileConversion conversion = loadConversion();
    conversion(source, target, onProgress, stop);
}

} // namespace varnet
