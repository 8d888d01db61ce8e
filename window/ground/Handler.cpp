#include "window/ground/Handler.h"

#include <QLoggingCategory>

namespace tracelet {
namespace {

Q_LOGGING_CATEGORY(QuietErrors, "tracelet.quiet", QtInfoMsg)

} // namespace

void NoteQuietError(const std::exception& error) {
    qCDebug(QuietErrors, "%s", error.what());
}

} // namespace tracelet
