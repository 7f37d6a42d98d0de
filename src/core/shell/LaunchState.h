#pragma once

namespace tagmoor {

// Process-wide values of the start sequence, read on the main thread.
struct LaunchState {
    // The presets are loaded and files handed over may be added.
    bool launchFinished = false;
    // Mirror of the "overwrite a file of the same name" setting, read by the batch output.
    bool isOverwriteIfAFileWithASameName = false;
};

} // namespace tagmoor
