#include "Varnet/capture/AudioFileConverter.h"

#include <cstdio>
#include <exception>

/// Converts one audio file as the import does: what convert.py measures. usage: convert SOURCE TARGET
int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    try {
        varnet::convertFile(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
