#pragma once

#include <QLoggingCategory>

namespace tagmoor {
Q_DECLARE_LOGGING_CATEGORY(lcBatch)
}
