// SPDX-License-Identifier: MIT
#include "foundation/text/Hex.h"

#include "foundation/Assert.h"
#include "foundation/MathUtility.h"
#include "foundation/text/FoldAscii.h"

namespace {

constexpr char digits[] = "0123456789ABCDEF";

template <typename Char>
constexpr bool IsDecimal(Char character) noexcept
{
    return MathUtility::IsBetween(character, Char{'0'}, Char{'9'});
}

template <typename Char>
constexpr int Value(Char character) noexcept
{
    if (IsDecimal(character)) return character - Char{'0'};
    return (character & 0x0F) + 9;
}

template <typename Char>
constexpr BYTE Pair(const Char* pair) noexcept
{
    return static_cast<BYTE>(Value(pair[0]) << 4 | Value(pair[1]));
}

} // namespace

template <typename Char>
void Hex::Encode(const void* in, Char* out, int count)
{
    ASSERT(in && out);
    const auto* bytes = static_cast<const BYTE*>(in);
    for (int index = 0; index < count; ++index) {
        *out++ = static_cast<Char>(digits[bytes[index] >> 4]);
        *out++ = static_cast<Char>(digits[bytes[index] & 0x0F]);
    }
}

template <typename Char>
void Hex::Decode(const Char* in, void* out, int count)
{
    ASSERT(in && out);
    auto* bytes = static_cast<BYTE*>(out);
    for (int index = 0; index < count; ++index) bytes[index] = Pair(in + 2 * index);
}

template <typename Char>
void Hex::EncodeWord(WORD value, Char* out)
{
    const BYTE bytes[] = {HIBYTE(value), LOBYTE(value)};
    Encode(bytes, out, sizeof bytes);
}

template <typename Char>
void Hex::EncodeDWord(DWORD value, Char* out)
{
    EncodeWord(HIWORD(value), out);
    EncodeWord(LOWORD(value), out + 4);
}

template <typename Char>
WORD Hex::DecodeWord(const Char* in)
{
    BYTE bytes[2];
    Decode(in, bytes, sizeof bytes);
    return MAKEWORD(bytes[1], bytes[0]);
}

template <typename Char>
DWORD Hex::DecodeDWord(const Char* in)
{
    const DWORD high = DecodeWord(in);
    return high << 16 | DecodeWord(in + 4);
}

template <typename Char>
BYTE Hex::ReadPair(const Char* text) noexcept
{
    return text[0] == Char{} || text[1] == Char{} ? BYTE{0} : Pair(text);
}

template <typename Char>
bool Hex::IsHexDigit(Char character) noexcept
{
    return IsDecimal(character) || MathUtility::IsBetween(FoldAscii(character), Char{'A'}, Char{'F'});
}

template <typename Char>
bool Hex::IsHexPair(const Char* text) noexcept
{
    return IsHexDigit(text[0]) && IsHexDigit(text[1]);
}

template void Hex::Encode(const void*, char*, int);
template void Hex::Encode(const void*, wchar_t*, int);
template void Hex::Decode(const char*, void*, int);
template void Hex::Decode(const wchar_t*, void*, int);
template void Hex::EncodeWord(WORD, char*);
template void Hex::EncodeWord(WORD, wchar_t*);
template void Hex::EncodeDWord(DWORD, char*);
template void Hex::EncodeDWord(DWORD, wchar_t*);
template WORD Hex::DecodeWord(const char*);
template WORD Hex::DecodeWord(const wchar_t*);
template DWORD Hex::DecodeDWord(const char*);
template DWORD Hex::DecodeDWord(const wchar_t*);
template BYTE Hex::ReadPair(const char*) noexcept;
template BYTE Hex::ReadPair(const wchar_t*) noexcept;
template bool Hex::IsHexDigit(char) noexcept;
template bool Hex::IsHexDigit(wchar_t) noexcept;
template bool Hex::IsHexPair(const char*) noexcept;
template bool Hex::IsHexPair(const wchar_t*) noexcept;
