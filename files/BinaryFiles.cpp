#include "files/BinaryFiles.h"

#include "base/RunTimeError.h"
#include "files/ByteReader.h"

#include <algorithm>
#include <vector>

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

std::int64_t BinaryFiles::Position(int number) const {
    return At(number).Position();
}

std::int64_t BinaryFiles::Length(int number) const {
    return At(number).Size();
}

bool BinaryFiles::EndOfFile(int number) const {
    return Position(number) >= Length(number);
}

void BinaryFiles::Seek(int number, std::int64_t offset) {
    At(number).Seek(offset);
}

void BinaryFiles::PutBytes(int number, std::span<const std::byte> bytes) {
    At(number).Write(bytes);
}

void BinaryFiles::PutText(int number, std::string_view text) {
    PutBytes(number, std::as_bytes(std::span(text)));
}

void BinaryFiles::PutZstring(int number, std::string_view text) {
    std::string bytes(text.substr(0, text.find('\0')));
    bytes += '\0';
    PutText(number, bytes);
}

std::size_t BinaryFiles::GetBytes(int number, std::span<std::byte> bytes) {
    return At(number).Read(bytes);
}

void BinaryFiles::GetWhole(int number, std::span<std::byte> bytes) {
    SystemFile& file = At(number);
    if (file.ReadAt(file.Position(), bytes) < bytes.size())
        throw Fault::UnexpectedEndOfFile();
    file.Seek(file.Position() + static_cast<std::int64_t>(bytes.size()));
}

std::string Readsz(BinaryFiles& files, int number) {
    ByteReader reader(files.File(number), files.Position(number));
    std::string text = reader.Readsz();
    files.Seek(number, reader.Offset());
    return text;
}

} // namespace tracelet
