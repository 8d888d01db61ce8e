#pragma once

#include <stdexcept>
#include <string>

namespace tracelet {

/// A failure that ends a procedure. `what()` is the description that a user sees, UTF-8, without a final
/// stop.
class RunTimeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The standard descriptions. Throw them: `throw Fault::Overflow();`
namespace Fault {
[[nodiscard]] RunTimeError DivisionByZero();      ///< "Division by zero"
[[nodiscard]] RunTimeError SubscriptOutOfRange(); ///< "Subscript out of range"
[[nodiscard]] RunTimeError Overflow();            ///< "Overflow"
[[nodiscard]] RunTimeError TypeMismatch();        ///< "Type mismatch"
[[nodiscard]] RunTimeError FileNotFound();        ///< "File not found"
[[nodiscard]] RunTimeError PathNotFound();        ///< "Path not found"
[[nodiscard]] RunTimeError PermissionDenied();    ///< "Permission denied"
[[nodiscard]] RunTimeError OutOfMemory();         ///< "Out of memory"
[[nodiscard]] RunTimeError DiskFull();            ///< "Disk full"
[[nodiscard]] RunTimeError BadFileNumber();       ///< "Bad file name or number"
[[nodiscard]] RunTimeError FileAlreadyOpen();     ///< "File already open"
[[nodiscard]] RunTimeError UnexpectedEndOfFile(); ///< "Unexpected end of file"

/// The description that fits a value of `errno` after a failed file call; the system's own text for any
/// value without a standard description.
[[nodiscard]] RunTimeError FromErrno(int errorNumber);
} // namespace Fault

} // namespace tracelet
