#include "core/base/RunTimeError.h"

#include <cerrno>
#include <cstring>

namespace tracelet::Fault {

RunTimeError DivisionByZero() {
    return RunTimeError("Division by zero");
}
RunTimeError SubscriptOutOfRange() {
    return RunTimeError("Subscript out of range");
}
RunTimeError Overflow() {
    return RunTimeError("Overflow");
}
RunTimeError TypeMismatch() {
    return RunTimeError("Type mismatch");
}
RunTimeError FileNotFound() {
    return RunTimeError("File not found");
}
RunTimeError PathNotFound() {
    return RunTimeError("Path not found");
}
RunTimeError PermissionDenied() {
    return RunTimeError("Permission denied");
}
RunTimeError OutOfMemory() {
    return RunTimeError("Out of memory");
}
RunTimeError DiskFull() {
    return RunTimeError("Disk full");
}
RunTimeError BadFileNumber() {
    return RunTimeError("Bad file name or number");
}
RunTimeError FileAlreadyOpen() {
    return RunTimeError("File already open");
}
RunTimeError UnexpectedEndOfFile() {
    return RunTimeError("Unexpected end of file");
}

// Everything that is shown is in one language, whatever the locale: strerror would translate.
RunTimeError FromErrno(int errorNumber) {
    switch (errorNumber) {
    case ENOENT:
        return FileNotFound();
    case ENOTDIR:
    case ELOOP:
    case ENAMETOOLONG:
        return PathNotFound();
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return PermissionDenied();
    case ENOMEM:
        return OutOfMemory();
    case ENOSPC:
    case EDQUOT:
        return DiskFull();
    default:
        break;
    }
    const char* description = strerrordesc_np(errorNumber);
    return RunTimeError(description != nullptr ? description : "Unknown error");
}

} // namespace tracelet::Fault
