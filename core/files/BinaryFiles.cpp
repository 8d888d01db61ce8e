#include "core/files/BinaryFiles.h"

#include "core/base/RunTimeError.h"

namespace tracelet {

SystemFile& BinaryFiles::At(int number) {
    if (number < LowestNumber || number > HighestNumber)
        throw Fault::BadFileNumber();
    return files[static_cast<std::size_t>(number - LowestNumber)];
}

const SystemFile& BinaryFiles::At(int number) const {
    return const_cast<BinaryFiles*>(this)->At(number);
}

void BinaryFiles::OpenAs(int number, std::string_view path, Disposition disposition) {
    SystemFile& file = At(number);
    if (file.IsOpen())
        throw Fault::FileAlreadyOpen();
    file = SystemFile(path, disposition);
}

void BinaryFiles::Open(int number, std::string_view path) {
    OpenAs(number, path, Disposition::OpenAlways);
}

void BinaryFiles::OpenForOutput(int number, std::string_view path) {
    OpenAs(number, path, Disposition::CreateAlways);
}

void BinaryFiles::OpenForReading(int number, std::string_view path) {
    OpenAs(number, path, Disposition::OpenExisting);
}

void BinaryFiles::Close(int number) {
    At(number).Close();
}

void BinaryFiles::CloseAll() {
    for (SystemFile& file : files)
        file.Close();
}

bool BinaryFiles::IsOpen(int number) const {
    return At(number).IsOpen();
}

const SystemFile& BinaryFiles::File(int number) const {
    return At(number);
}

std::int64_t BinaryFiles::Length(int number) const {
    return At(number).Size();
}

void BinaryFiles::Seek(int number, std::int64_t offset) {
    At(number).Seek(offset);
}

void BinaryFiles::PutBytesAt(int number, std::int64_t offset, std::span<const std::byte> bytes) {
    At(number).WriteAt(offset, bytes);
}

void BinaryFiles::PutBytes(int number, std::span<const std::byte> bytes) {
    At(number).Write(bytes);
}

} // namespace tracelet
