// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/registry/RegistryText.h"
#include "foundation/text/OCRC32.h"

namespace {

constexpr const wchar_t* checksumName = L"(CRC32)";

/// The path of a value in the base key, whatever its name holds.
OString ValuePath(const OString& name)
{
    OString path = ORegistry::Escape(name);
    path.Replace(L"\\", L"%5C");
    return path;
}

std::vector<BYTE> BytesOf(const OStringArray& texts)
{
    OBuffer<wchar_t> packed;
    const int count = texts.Pack(packed, OStringArray::packTerminated);
    const auto* const bytes = reinterpret_cast<const BYTE*>(packed.GetData());
    return {bytes, bytes + static_cast<size_t>(count) * sizeof(wchar_t)};
}

void TextsOf(const std::vector<BYTE>& bytes, OStringArray& texts)
{
    OBuffer<wchar_t> packed(static_cast<int>(bytes.size() / sizeof(wchar_t)));
    if (packed.IsEmpty()) return;
    std::memcpy(packed.GetData(), bytes.data(), static_cast<size_t>(packed.GetSize()) * sizeof(wchar_t));
    texts.Unpack(packed, OStringArray::packTerminated);
}

/// Reads a value of the base key as the text is to tell it. False if there is none.
bool Read(const ORegistry& registry, const OString& name, RegistryTextValue& value)
{
    const OString path = ValuePath(name);
    DWORD size = 0;
    if (!registry.QueryValueInfo(path, &size, &value.type)) return false;

    value.name = name.wstring();
    switch (value.type) {
    case REG_SZ:
        value.text = registry.GetString(path).wstring();
        return true;
    case REG_DWORD:
        value.number = registry.GetDWORD(path, DWORD{0});
        return true;
    case REG_MULTI_SZ: {
        // Deliberate: through an array, so only texts that aren't empty stay.
        OStringArray texts;
        registry.GetStringArray(path, texts);
        value.bytes = BytesOf(texts);
        return true;
    }
    default: {
        value.bytes.resize(size);
        const int length = registry.GetBinary(path, value.bytes.data(), static_cast<int>(size), value.type);
        // It may have become shorter meanwhile.
        value.bytes.resize(std::min(size, static_cast<DWORD>(std::max(length, 0))));
        return length >= 0;
    }
    }
}

void Write(const ORegistry& registry, const RegistryTextValue& value)
{
    const OString path = ValuePath(value.name.c_str());
    switch (value.type) {
    case REG_SZ:
        registry.SetString(path, value.text.c_str());
        break;
    case REG_DWORD:
        registry.SetDWORD(path, value.number);
        break;
    case REG_MULTI_SZ: {
        OStringArray texts;
        TextsOf(value.bytes, texts);
        registry.SetStringArray(path, texts);
        break;
    }
    default:
        registry.SetBinary(path, value.bytes.data(), static_cast<int>(value.bytes.size()), value.type);
        break;
    }
}

DWORD ChecksumFrom(const OStringArray& lines, int start)
{
    OCRC32 checksum;
    for (int index = start; index < lines.GetSize(); ++index) checksum.Add(lines[index]);
    return checksum.GetValue();
}

void TrimBrackets(OString& line)
{
    std::wstring text = line.wstring();
    text.erase(0, text.find_first_not_of(L"[]"));
    text.erase(text.find_last_not_of(L"[]") + 1);
    line = text.c_str();
}

/// Does what lines say, one after the other.
class Importer {
public:
    Importer(ORegistry& registry, bool replace) : _registry(registry), _replace(replace) {}

    void Take(OString line)
    {
        line.TrimLeft(" \t");
        line.TrimRight(" \t\r\n\\");
        if (_inKey) {
            TakeInKey(line);
        } else if (line.Left(1) == L"[") {
            TakeKey(line);
        }
    }

private:
    void TakeKey(OString line)
    {
        TrimBrackets(line);
        if (line.Left(1) == L"-") {
            line.TrimLeft("-");
            // Nothing here is the base path's: a root that isn't known deletes nothing.
            const OString key = ORegistry::FromNativePath(line);
            if (!key.IsEmpty()) _registry.DeleteKey(key, true);
            return;
        }
        const OString key = ORegistry::FromNativePath(line);
        _registry.SetBasePath(key);
        _registry.OpenKey(key, true);
        if (_replace) _registry.Delete("*");
        _inKey = true;
        _value.clear();
    }

    void TakeInKey(const OString& line)
    {
        if (line.IsEmpty()) {
            _inKey = false;
            return;
        }
        _value += line.wstring();
        if (_value.back() == L',') return;
        RegistryTextValue value;
        if (ReadRegistryTextValue(_value, value)) Write(_registry, value);
        _value.clear();
    }

    ORegistry& _registry;
    const bool _replace;
    bool _inKey = false;
    std::wstring _value; ///< what is there of a value line
};

} // namespace

bool ORegistry::ExportKey(const OString& path, OStringArray& lines, DWORD flags) noexcept
{
    return Contained(false, [&] {
        OString key;
        OString name;
        if (!ParsePath(_basePath, path, key, name)) return false;
        if (!name.IsEmpty()) key = SubKey(key, name);

        const int start = lines.GetSize();
        if (flags & exportDelete) {
            lines.Add(L"[-" + NativePathOf(key) + L"]");
            lines.Add("");
        }
        AppendKey(key, lines);
        if (flags & exportChecksum) {
            SetDWORD(key + L"/" + checksumName, ChecksumFrom(lines, start));
        }
        return true;
    });
}

void ORegistry::AppendKey(const OString& key, OStringArray& lines)
{
    lines.Add(L"[" + NativePathOf(key) + L"]");
    SetBasePath(key);

    OStringArray names;
    ListValues(key, names);
    for (int index = 0; index < names.GetSize(); ++index) {
        RegistryTextValue value;
        const bool isChecksum = names[index] == checksumName;
        if (!isChecksum && Read(*this, names[index], value)) WriteRegistryTextValue(value, lines);
    }
    lines.Add("");

    ListKeys(key, names);
    for (int index = 0; index < names.GetSize(); ++index) AppendKey(SubKey(key, names[index]), lines);
}

bool ORegistry::ImportLines(const OStringArray& lines, DWORD flags) noexcept
{
    return Contained(true, [&] {
        Importer importer(*this, (flags & importReplace) != 0);
        for (int index = 0; index < lines.GetSize(); ++index) importer.Take(lines[index]);
        return true;
    });
}
