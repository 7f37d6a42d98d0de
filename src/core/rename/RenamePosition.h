#pragma once

namespace tagmoor {

// Where an added text, a number or a date goes, relative to the name.
enum class RenamePosition {
    beforeName = 0,
    afterName = 1,
};

} // namespace tagmoor
