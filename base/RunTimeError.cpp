#include "base/RunTimeError.h"

#include <cerrno>
#include <system_error>

namespace tracelet::Fault {

RunTimeError DivisionByZero() { return RunTimeError("Division by zero"); }
RunTimeError SubscriptOutOfRange() { return RunTimeError("Subscript out of range"); }
RunTimeError Overflow() { return RunTimeError("Overflow"); }
RunTimeError TypeMismatch() { return RunTimeError("Type mismatch"); }
RunTimeError FileNotFound() { return RunTimeError("File not found"); }
RunTimeError PathNotFound() { return RunTimeError("Path not found"); }
RunTimeError PermissionDenied() { return RunTimeError("Permission denied"); }
RunTimeError OutOfMemory() { return RunTimeError("Out of memory"); }
RunTimeError DiskFull() { return RunTimeError("Disk full"); }
RunTimeError BadFileNumber() { return RunTimeError("Bad file name or number"); }
RunTimeError FileAlreadyOpen() { return RunTimeError("File already open"); }
RunTimeError UnexpectedEndOfFile() { return RunTimeError("Unexpected end of file"); }

RunTimeError FromErrno(int errorNumber) {
    switch (errorNumber) {
    case ENOENT: return FileNotFound();
    case ENOTDIR:
    case ELOOP:
    case ENAMETOOLONG: return PathNotFound();
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR: return PermissionDenied();
    case ENOMEM: return OutOfMemory();
    case ENOSPC:
    case EDQUOT: return DiskFull();
    default: return RunTimeError(std::generic_category().message(errorNumber));
    }
}

} // namespace tracelet::Fault
