// SPDX-License-Identifier: MIT
#include "foundation/text/OString.h"

#include "support/GuardedHeap.h"
#include "support/OStringState.h"
#include "support/RandomSeed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// Random operations on a handful of values that share cores, compared with a model that knows a text only as its
/// 16-bit units and its code page.

namespace {

// What the code pages of this test make of the characters of this test

struct Encoding {
    UINT codePage;
    char16_t unit;
    const char* bytes;
};

constexpr Encoding encodings[] = {
    {1252, u'\x00E9', "\xE9"    },
    {1252, u'\x00C9', "\xC9"    },
    {1252, u'\x20AC', "\x80"    },
    {932,  u'\x8868', "\x95\x5C"},
    {932,  u'\x30A2', "\x83\x41"},
    {932,  u'\xFF71', "\xB1"    },
    {936,  u'\x4E2D', "\xD6\xD0"},
    {936,  u'\x56FD', "\xB9\xFA"},
    {949,  u'\xAC00', "\xB0\xA1"},
    {949,  u'\xAC01', "\xB0\xA2"},
};

UINT RealPage(UINT codePage)
{
    return codePage == 0 ? 1252 : codePage;
}

std::string EncodeUtf8Unit(char16_t unit)
{
    const unsigned value = unit;
    if (value < 0x80) return {static_cast<char>(value)};
    if (value < 0x800) return {static_cast<char>(0xC0 + value / 64), static_cast<char>(0x80 + value % 64)};
    return {static_cast<char>(0xE0 + value / 4096), static_cast<char>(0x80 + value / 64 % 64),
            static_cast<char>(0x80 + value % 64)};
}

std::string EncodeUnit(UINT codePage, char16_t unit)
{
    if (unit < 0x80) return {static_cast<char>(unit)};
    if (codePage == 1208) return EncodeUtf8Unit(unit);
    const auto row = std::ranges::find_if(
        encodings, [&](const Encoding& one) { return one.codePage == RealPage(codePage) && one.unit == unit; });
    return row == std::end(encodings) ? "?" : row->bytes;
}

std::string Encode(UINT codePage, const std::u16string& units)
{
    std::string bytes;
    for (const char16_t unit : units) bytes += EncodeUnit(codePage, unit);
    return bytes;
}

/// Reads back what `Encode` gives for characters of `alphabet`.
std::u16string Decode(UINT codePage, const std::string& bytes, const std::u16string& alphabet)
{
    std::u16string units;
    for (size_t at = 0; at < bytes.size();) {
        const auto unit = std::ranges::find_if(alphabet, [&](char16_t one) {
            return one >= 0x80 && EncodeUnit(codePage, one) != "?" &&
                   bytes.compare(at, EncodeUnit(codePage, one).size(), EncodeUnit(codePage, one)) == 0;
        });
        units += unit == alphabet.end() ? static_cast<char16_t>(bytes[at]) : *unit;
        at += unit == alphabet.end() ? 1 : EncodeUnit(codePage, *unit).size();
    }
    return units;
}

const wchar_t* AsWide(const std::u16string& units)
{
    return reinterpret_cast<const wchar_t*>(units.c_str());
}

std::u16string AsUnits(const wchar_t* text)
{
    return {text, text + std::char_traits<wchar_t>::length(text)};
}

template <typename String>
int OrderOf(const String& left, const String& right)
{
    return std::ranges::lexicographical_compare(left, right)   ? -1
           : std::ranges::lexicographical_compare(right, left) ? 1
                                                               : 0;
}

/// The bytes as the narrow order sees them, the terminator among them.
std::vector<signed char> AsSigned(const std::string& bytes)
{
    std::vector<signed char> values(bytes.begin(), bytes.end());
    values.push_back(0);
    return values;
}

template <typename String>
String Folded(String text)
{
    for (auto& character : text) {
        const bool isSmall = 'a' <= character && character <= 'z';
        character = static_cast<typename String::value_type>(character - (isSmall ? 'a' - 'A' : 0));
    }
    return text;
}

/// By a table with a row for each beginning of the pattern and a column for each beginning of the text: whether the one
/// matches the other. Two rows are enough.
bool Matches(const std::u16string& pattern, const std::u16string& text)
{
    std::vector<bool> row(text.size() + 1);
    row[0] = true; // nothing matches nothing
    for (const char16_t character : pattern) {
        std::vector<bool> next(row.size());
        next[0] = row[0] && character == u'*';
        for (size_t length = 1; length < row.size(); ++length) {
            const bool isSame = character == u'?' || character == text[length - 1];
            next[length] = character == u'*' ? row[length] || next[length - 1] : row[length - 1] && isSame;
        }
        row = std::move(next);
    }
    return row.back();
}

/// A number's digits counted up by hand, from the end.
std::string CountedUp(std::string digits)
{
    size_t at = digits.size();
    while (at > 0 && digits[at - 1] == '9') digits[--at] = '0';
    if (at > 0)
        ++digits[at - 1];
    else
        digits = '1' + digits;
    const size_t leading = std::min(digits.find_first_not_of('0'), digits.size() - 1);
    return digits.substr(leading);
}

// The values under test, each beside its model

struct Value {
    OString text;
    std::u16string units;
    UINT codePage = 0;

    bool IsWide() const { return text.Core() && text.Core()->IsWide(); }
    std::string Bytes() const { return Encode(codePage, units); }
};

struct Setting {
    const char* name;
    std::vector<UINT> codePages;
    std::u16string alphabet;

    friend std::ostream& operator<<(std::ostream& out, const Setting& setting) { return out << setting.name; }
};

class World {
public:
    World(const Setting& setting, std::uint64_t seed) : _setting(setting), _random(seed) {}

    void Step()
    {
        const Operation& operation = operations[Below(std::size(operations))];
        _lastOperation = operation.name;
        (this->*operation.run)();
        for (Value& value : _values) CutLongText(value);
        CheckAll();
    }

    const char* LastOperation() const { return _lastOperation; }

private:
    struct Operation {
        const char* name;
        void (World::*run)();
    };
    static const Operation operations[46];

    size_t Below(size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(_random); }
    int Index(const Value& value) { return static_cast<int>(Below(value.units.size() + 6)) - 3; }
    Value& Any() { return _values[Below(_values.size())]; }
    char16_t Unit() { return _setting.alphabet[Below(_setting.alphabet.size())]; }
    UINT CodePage() { return _setting.codePages[Below(_setting.codePages.size())]; }

    std::u16string Units(size_t longest)
    {
        std::u16string units(Below(longest + 1), u'\0');
        for (char16_t& unit : units) unit = Unit();
        return units;
    }

    /// Characters that the value's code page has, as its bytes.
    std::string BytesFor(const Value& value) { return Encode(value.codePage, Units(12)); }

    std::u16string Decoded(const Value& value, const std::string& bytes) const
    {
        return Decode(value.codePage, bytes, _setting.alphabet);
    }

    /// What is left of a text that was brought into its narrow form.
    void Narrowed(Value& value) const { value.units = Decoded(value, value.Bytes()); }

    static bool GoWide(const Value& left, const Value& right)
    {
        return left.IsWide() || right.IsWide() || left.codePage != right.codePage;
    }

    void CutLongText(Value& value)
    {
        const size_t length = value.units.size() > 150 ? Below(40) : value.units.size();
        if (length == value.units.size()) return;
        value.text.Truncate(static_cast<int>(length));
        value.units.resize(length);
    }

    // Assignment

    void Forget() { Any() = Value(); }
    void Share() { Any() = Value(Any()); }
    void AssignNarrow()
    {
        Value& value = Any();
        const std::string bytes = BytesFor(value);
        value.text = bytes.c_str();
        value.units = Decoded(value, bytes);
    }
    void AssignWide()
    {
        Value& value = Any();
        value.units = Units(40);
        value.text = AsWide(value.units);
    }
    void AssignOwnTail()
    {
        Value& value = Any();
        const size_t at = Below(value.units.size() + 1);
        value.text = value.text.wstring() + at;
        value.units.erase(0, at);
    }
    void AssignOwnNarrowTail()
    {
        Value& value = Any();
        const size_t at = Below(value.units.size() + 1);
        const size_t byte = Encode(value.codePage, value.units.substr(0, at)).size();
        value.text = value.text.nstring() + byte;
        value.units.erase(0, at);
        Narrowed(value);
    }
    void AssignUpTo()
    {
        Value& value = Any();
        const std::u16string units = Units(40);
        const size_t maximum = Below(45);
        value.text.AssignN(AsWide(units), static_cast<int>(maximum));
        value.units = units.substr(0, maximum);
    }
    void AssignCharacter()
    {
        Value& value = Any();
        value.units = Unit();
        value.text = static_cast<wchar_t>(value.units[0]);
    }
    void ChangePage()
    {
        Value& value = Any();
        value.codePage = CodePage();
        value.text.SetCodePage(value.codePage);
    }
    void ThroughUtf8()
    {
        Value& target = Any();
        const Value source = Any();
        target.text = FromUTF8(ToUTF8(source.text).nstring());
        target.units = source.units;
        target.codePage = 0;
    }

    // Appending

    void AppendModel(Value& value, const std::u16string& units, UINT codePage)
    {
        if (units.empty()) return;
        if (value.units.empty()) value.codePage = codePage;
        value.units += units;
    }
    void AppendValue()
    {
        Value& target = Any();
        const Value& source = Any();
        target.text += source.text;
        AppendModel(target, std::u16string(source.units), source.codePage);
    }
    void AddValues()
    {
        Value& target = Any();
        const Value& left = Any();
        const Value& right = Any();
        Value sum(left);
        sum.text = left.text + right.text;
        AppendModel(sum, std::u16string(right.units), right.codePage);
        target = sum;
    }
    void AppendNarrow()
    {
        Value& value = Any();
        const std::string bytes = BytesFor(value);
        value.text += bytes.c_str();
        AppendModel(value, Decoded(value, bytes), value.codePage);
    }
    void AppendWide()
    {
        Value& value = Any();
        const std::u16string units = Units(40);
        value.text += AsWide(units);
        AppendModel(value, units, value.codePage);
    }
    void AppendNarrowCharacter()
    {
        Value& value = Any();
        const char character = static_cast<char>('a' + Below(3));
        value.text += character;
        Narrowed(value);
        value.units += static_cast<char16_t>(character);
    }
    void AppendWideCharacter()
    {
        Value& value = Any();
        const char16_t unit = Unit();
        value.text += static_cast<wchar_t>(unit);
        value.units += unit;
    }
    void AppendNumber()
    {
        Value& value = Any();
        const int number = static_cast<int>(Below(2000)) - 1000;
        value.text += number;
        const std::string digits = std::to_string(number);
        value.units.append(digits.begin(), digits.end());
    }

    // Mutation

    void InsertNarrow()
    {
        Value& value = Any();
        const std::string bytes = BytesFor(value);
        const size_t at = Below(value.units.size() + 1);
        const size_t byte = Encode(value.codePage, value.units.substr(0, at)).size();
        value.text.Insert(static_cast<int>(byte), bytes.c_str());
        if (bytes.empty()) return;
        Narrowed(value);
        value.units.insert(at, Decoded(value, bytes));
    }
    void InsertModel(Value& value, int index, const std::u16string& units)
    {
        value.units.insert(static_cast<size_t>(std::clamp(index, 0, static_cast<int>(value.units.size()))), units);
    }
    void InsertWide()
    {
        Value& value = Any();
        const std::u16string units = Units(12);
        const int index = Index(value);
        value.text.Insert(index, AsWide(units));
        InsertModel(value, index, units);
    }
    void InsertValue()
    {
        Value& target = Any();
        const Value& source = Any();
        const int index = Index(target);
        target.text.Insert(index, source.text);
        InsertModel(target, index, std::u16string(source.units));
    }
    void Delete()
    {
        Value& value = Any();
        const int index = Index(value);
        const int count = Index(value);
        value.text.Delete(index, count);
        const auto at = static_cast<size_t>(std::clamp(index, 0, static_cast<int>(value.units.size())));
        value.units.erase(at, static_cast<size_t>(std::max(count, 0)));
    }
    void Truncate()
    {
        Value& value = Any();
        const auto length = Below(value.units.size() + 4);
        value.text.Truncate(static_cast<int>(length));
        value.units.resize(std::min(length, value.units.size()));
    }
    void Empty()
    {
        Value& value = Any();
        value.text.Empty();
        value.units.clear();
    }
    void ReplaceIn(Value& value, const OString& oldText, const std::u16string& oldUnits, const OString& newText,
                   const std::u16string& newUnits)
    {
        int expected = 0;
        std::u16string result;
        size_t from = 0;
        const bool isVain = oldUnits.empty() || oldUnits == newUnits;
        size_t at = isVain ? value.units.npos : value.units.find(oldUnits);
        for (; at != value.units.npos; at = value.units.find(oldUnits, from)) {
            result += value.units.substr(from, at - from) + newUnits;
            from = at + oldUnits.size();
            ++expected;
        }
        result += value.units.substr(from);
        EXPECT_EQ(value.text.Replace(oldText, newText), expected);
        value.units = result;
    }
    void ReplaceValues()
    {
        Value& value = Any();
        const Value& oldValue = Any();
        const Value& newValue = Any();
        ReplaceIn(value, oldValue.text, std::u16string(oldValue.units), newValue.text, std::u16string(newValue.units));
    }
    void ReplaceSmall()
    {
        Value& value = Any();
        const std::u16string oldUnits = Units(2);
        const std::u16string newUnits = Units(2);
        ReplaceIn(value, AsWide(oldUnits), oldUnits, AsWide(newUnits), newUnits);
    }
    void Remove()
    {
        Value& value = Any();
        const char16_t unit = Unit();
        EXPECT_EQ(value.text.Remove(static_cast<wchar_t>(unit)), std::ranges::count(value.units, unit));
        std::erase(value.units, unit);
    }
    void TrimLeftModel(Value& value, const std::u16string& set, const std::string& narrowSet, bool isWide)
    {
        if (isWide) value.units.erase(0, value.units.find_first_not_of(set));
        const std::string bytes = value.Bytes();
        value.units.erase(0, std::min(bytes.find_first_not_of(narrowSet), value.units.size()));
    }
    void TrimRightModel(Value& value, const std::u16string& set, const std::string& narrowSet, bool isWide)
    {
        if (isWide) value.units.resize(value.units.find_last_not_of(set) + 1);
        const std::string bytes = value.Bytes();
        const size_t trailing = bytes.size() - (bytes.find_last_not_of(narrowSet) + 1);
        value.units.resize(value.units.size() - std::min(trailing, value.units.size()));
    }
    void TrimLeft()
    {
        Value& value = Any();
        const Value set = SetOf();
        const bool isWide = value.IsWide();
        value.text.TrimLeft(set.text);
        TrimLeftModel(value, set.units, set.Bytes(), isWide);
    }
    void TrimRight()
    {
        Value& value = Any();
        const Value set = SetOf();
        const bool isWide = value.IsWide();
        value.text.TrimRight(set.text);
        TrimRightModel(value, set.units, set.Bytes(), isWide);
    }
    void TrimItself()
    {
        Value& value = Any();
        value.text.TrimLeft(value.text);
        value.units.clear();
    }
    void Trim()
    {
        Value& value = Any();
        const bool isWide = value.IsWide();
        value.text.Trim();
        TrimRightModel(value, u" \t\r\n", " \t\r\n", isWide);
        TrimLeftModel(value, u" \t\r\n", " \t\r\n", isWide);
    }
    Value SetOf()
    {
        Value set;
        set.codePage = CodePage();
        set.text.SetCodePage(set.codePage);
        set.units = Units(3);
        set.text = AsWide(set.units);
        return set;
    }
    void ChangeCase()
    {
        Value& value = Any();
        value.text.MakeUpper();
        for (char16_t& unit : value.units) unit = unit == u'\x00E9' ? u'\x00C9' : unit;
        value.units = Folded(value.units);
    }
    void Reverse()
    {
        Value& value = Any();
        if (value.units.empty()) return;
        value.text.MakeReverse();
        std::ranges::reverse(value.units);
    }
    void PadLeft()
    {
        Value& value = Any();
        const size_t width = value.units.size() + Below(5);
        const char16_t unit = Unit();
        value.text.PadLeft(static_cast<int>(width), static_cast<wchar_t>(unit));
        value.units.insert(0, width - value.units.size(), unit);
    }
    void PadRight()
    {
        Value& value = Any();
        const size_t width = value.units.size() + Below(40);
        const char16_t unit = Unit();
        value.text.PadRight(static_cast<int>(width), static_cast<wchar_t>(unit));
        value.units.resize(width, unit);
    }
    void Increment()
    {
        Value& value = Any();
        const bool withBlank = Below(2) == 0;
        value.text.IncrementName(withBlank);
        std::string bytes = value.Bytes();
        const size_t digits = bytes.find_last_not_of("0123456789") + 1;
        const std::string blank = withBlank && !bytes.empty() && bytes.back() != ' ' ? " " : "";
        const std::string number = bytes.substr(digits);
        bytes = number.empty() ? bytes + blank + "2" : bytes.substr(0, digits) + CountedUp(number);
        value.units = Decoded(value, bytes);
    }
    void SetHex()
    {
        Value& value = Any();
        const std::string bytes = BytesFor(value);
        value.text.SetHex(bytes.data(), static_cast<int>(bytes.size()));
        value.units.clear();
        for (const char byte : bytes) {
            const auto number = static_cast<unsigned char>(byte);
            value.units += u"0123456789ABCDEF"[number / 16];
            value.units += u"0123456789ABCDEF"[number % 16];
        }
    }
    void Format()
    {
        Value& value = Any();
        const std::string bytes = value.Bytes();
        value.text.Format("<%s>%d", value.text.nstring(), 5);
        value.units = u"<" + Decoded(value, bytes) + u">5";
    }
    void WriteBuffer()
    {
        Value& value = Any();
        value.units = Units(60);
        std::ranges::copy(value.units, value.text.GetBuffer<wchar_t>(static_cast<int>(value.units.size())));
    }

    // Reading

    void Cut()
    {
        Value& target = Any();
        const Value& source = Any();
        const int start = Index(source);
        const int count = Index(source);
        Value part;
        part.codePage = source.codePage;
        part.text = source.text.Mid(start, count);
        const auto from = std::min(static_cast<size_t>(std::max(start, 0)), source.units.size());
        part.units = source.units.substr(from, static_cast<size_t>(std::max(count, 0)));
        target = part;
    }
    void CutEnds()
    {
        Value& target = Any();
        const Value& source = Any();
        const int count = Index(source);
        const auto kept = std::min(static_cast<size_t>(std::max(count, 0)), source.units.size());
        Value part(source);
        const bool isLeft = Below(2) == 0;
        part.text = isLeft ? source.text.Left(count) : source.text.Right(count);
        part.units = isLeft ? source.units.substr(0, kept) : source.units.substr(source.units.size() - kept);
        target = part;
    }
    void ReadNarrow()
    {
        const Value& value = Any();
        EXPECT_EQ(value.text.nstring(), value.Bytes());
    }
    void ReadWide()
    {
        const Value& value = Any();
        EXPECT_EQ(AsUnits(value.text.wstring()), value.units);
    }
    void ReadLength()
    {
        const Value& value = Any();
        EXPECT_EQ(value.text.Length(), static_cast<int>(value.units.size()));
    }
    void Compare()
    {
        const Value& left = Any();
        const Value& right = Any();
        const bool inWide = GoWide(left, right);
        const int order =
            inWide ? OrderOf(left.units, right.units) : OrderOf(AsSigned(left.Bytes()), AsSigned(right.Bytes()));
        const int orderNoCase = inWide ? OrderOf(Folded(left.units), Folded(right.units))
                                       : OrderOf(AsSigned(Folded(left.Bytes())), AsSigned(Folded(right.Bytes())));
        EXPECT_EQ(left.text.Compare(right.text), order);
        EXPECT_EQ(right.text.Compare(left.text), -order);
        EXPECT_EQ(left.text.CompareNoCase(right.text), orderNoCase);
        EXPECT_EQ(left.text == right.text, order == 0);
    }
    void Search()
    {
        const Value& value = Any();
        const Value& other = Any();
        const int start = Index(value);
        const auto from = static_cast<size_t>(std::max(start, 0));
        const bool isPast = from >= value.units.size();
        const auto index = [](size_t at) { return at == std::u16string::npos ? -1 : static_cast<int>(at); };
        EXPECT_EQ(value.text.FindOneOf(other.text), index(value.units.find_first_of(other.units)));
        EXPECT_EQ(value.text.ReverseFindOneOf(other.text), index(value.units.find_last_of(other.units)));
        EXPECT_EQ(value.text.Find(other.text, start), isPast ? -1 : index(value.units.find(other.units, from)));
        const char16_t unit = Unit();
        EXPECT_EQ(value.text.Find(static_cast<wchar_t>(unit), start),
                  isPast ? -1 : index(value.units.find(unit, from)));
        EXPECT_EQ(value.text.ReverseFind(static_cast<wchar_t>(unit)), index(value.units.rfind(unit)));
    }
    void Match()
    {
        const Value& value = Any();
        static constexpr char16_t wildcards[] = u"**??";
        std::u16string pattern = value.units.substr(0, 12);
        for (char16_t& unit : pattern) unit = Below(3) == 0 ? wildcards[Below(4)] : unit;
        EXPECT_EQ(value.text.Match(AsWide(pattern)), Matches(pattern, value.units));
    }

    // Checking

    void CheckAll() const
    {
        for (const Value& value : _values) CheckValue(value);
    }

    void CheckValue(const Value& value) const
    {
        const OStringCore* const core = value.text.Core();
        EXPECT_EQ(value.text.IsEmpty(), value.units.empty());
        EXPECT_EQ(value.text.GetCodePage(), value.codePage);
        if (!core) return;
        EXPECT_EQ(core->capacity % 32, 0u);
        EXPECT_EQ(core->reference_count,
                  std::ranges::count_if(_values, [&](const Value& one) { return one.text.Core() == core; }));
        if (core->HasWide()) CheckWideForm(*core, value);
        if (core->HasNarrow()) CheckNarrowForm(*core, value);
    }

    static void CheckWideForm(const OStringCore& core, const Value& value)
    {
        EXPECT_EQ(AsUnits(core.wdata.get()), value.units);
        EXPECT_LT(value.units.size(), core.WideSize());
    }

    static void CheckNarrowForm(const OStringCore& core, const Value& value)
    {
        const std::string bytes = value.Bytes();
        EXPECT_EQ(core.ndata.get(), bytes);
        EXPECT_LT(bytes.size(), core.NarrowSize());
    }

    Setting _setting;
    std::mt19937_64 _random;
    std::array<Value, 6> _values;
    const char* _lastOperation = "";
};

const World::Operation World::operations[] = {
    {"Forget",                &World::Forget               },
    {"Share",                 &World::Share                },
    {"AssignNarrow",          &World::AssignNarrow         },
    {"AssignWide",            &World::AssignWide           },
    {"AssignOwnTail",         &World::AssignOwnTail        },
    {"AssignOwnNarrowTail",   &World::AssignOwnNarrowTail  },
    {"AssignUpTo",            &World::AssignUpTo           },
    {"AssignCharacter",       &World::AssignCharacter      },
    {"ChangePage",            &World::ChangePage           },
    {"ThroughUtf8",           &World::ThroughUtf8          },
    {"AppendValue",           &World::AppendValue          },
    {"AddValues",             &World::AddValues            },
    {"AppendNarrow",          &World::AppendNarrow         },
    {"AppendWide",            &World::AppendWide           },
    {"AppendNarrowCharacter", &World::AppendNarrowCharacter},
    {"AppendWideCharacter",   &World::AppendWideCharacter  },
    {"AppendNumber",          &World::AppendNumber         },
    {"InsertNarrow",          &World::InsertNarrow         },
    {"InsertWide",            &World::InsertWide           },
    {"InsertValue",           &World::InsertValue          },
    {"Delete",                &World::Delete               },
    {"Truncate",              &World::Truncate             },
    {"Empty",                 &World::Empty                },
    {"ReplaceValues",         &World::ReplaceValues        },
    {"ReplaceSmall",          &World::ReplaceSmall         },
    {"Remove",                &World::Remove               },
    {"TrimLeft",              &World::TrimLeft             },
    {"TrimRight",             &World::TrimRight            },
    {"TrimItself",            &World::TrimItself           },
    {"Trim",                  &World::Trim                 },
    {"ChangeCase",            &World::ChangeCase           },
    {"Reverse",               &World::Reverse              },
    {"PadLeft",               &World::PadLeft              },
    {"PadRight",              &World::PadRight             },
    {"Increment",             &World::Increment            },
    {"SetHex",                &World::SetHex               },
    {"Format",                &World::Format               },
    {"WriteBuffer",           &World::WriteBuffer          },
    {"Cut",                   &World::Cut                  },
    {"CutEnds",               &World::CutEnds              },
    {"ReadNarrow",            &World::ReadNarrow           },
    {"ReadWide",              &World::ReadWide             },
    {"ReadLength",            &World::ReadLength           },
    {"Compare",               &World::Compare              },
    {"Search",                &World::Search               },
    {"Match",                 &World::Match                },
};

class OStringProperty : public ::testing::TestWithParam<Setting> {};

TEST_P(OStringProperty, RandomOperationsAgreeWithTheModel)
{
    ASSERT_EQ(::GetACP(), 1252u);
    const std::uint64_t seed = RandomSeed();
    const GuardedHeap heap;
    const int before = heap.Living();
    const int steps = RandomOperations(5'000, 100'000);
    {
        World world(GetParam(), seed);
        for (int step = 0; step < steps; ++step) {
            world.Step();
            ASSERT_FALSE(HasFailure()) << "VORLANE_SEED=" << seed << ", step " << step << ", " << world.LastOperation();
        }
    }
    EXPECT_EQ(heap.Living(), before);
    EXPECT_EQ(heap.Underruns(), 0);
}

INSTANTIATE_TEST_SUITE_P(CodePages, OStringProperty,
                         ::testing::Values(
                             Setting{
                                 "Narrow", {0},
                                  u"abAB09 \t\x00E9\x00C9\x20AC"
},
                             Setting{"Utf8", {1208}, u"abAB09 \x00E9\x00C9\x20AC\xD83D\xDE00"},
                             Setting{"DoubleByte", {949}, u"abAB09 \xAC00\xAC01"},
                             Setting{"WesternMixed", {0, 1252, 1208}, u"abAB09 \x00E9\x00C9\x20AC"},
                             Setting{"JapaneseMixed", {0, 932, 1208}, u"ab09 \\\x8868\x30A2\xFF71"},
                             Setting{"ChineseMixed", {936, 1208, 0}, u"ab09 \x4E2D\x56FD"}),
                         [](const auto& setting) { return setting.param.name; });

} // namespace
