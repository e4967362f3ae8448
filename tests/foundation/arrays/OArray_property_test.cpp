// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "foundation/text/OStringArray.h"
#include "foundation/arrays/OTypedArray.h"
#include "support/RandomSeed.h"

namespace {

constexpr int largestSize = 300;

/// A source of random numbers that can be had again from its seed.
class Dice {
public:
    int Upto(int highest) { return std::uniform_int_distribution<int>(0, highest)(_engine); }

private:
    std::mt19937_64 _engine{RandomSeed()};
};

/// What every array must do, done on a std::vector; elements are of type T.
template <typename T>
struct Model {
    std::vector<T> elements;

    int Size() const { return static_cast<int>(elements.size()); }
    void SetSize(int size) { elements.resize(static_cast<size_t>(size)); }
    void Insert(int index, const T& value, int count)
    {
        if (index > Size()) SetSize(index);
        elements.insert(elements.begin() + index, static_cast<size_t>(count), value);
    }
    void Remove(int index, int count) { elements.erase(elements.begin() + index, elements.begin() + index + count); }
    int Find(const T& value, int start) const
    {
        for (int index = start; index < Size(); ++index) {
            if (elements[static_cast<size_t>(index)] == value) return index;
        }
        return -1;
    }
};

/// Throws random operations at an array and its model and compares the two after each. `Array` is an adapter:
/// it has the operations below over elements of type `Array::Element`.
template <typename Array>
class PropertyRun {
public:
    using Element = typename Array::Element;

    void Go()
    {
        const std::array<std::function<void()>, 10> operations = {
            [&] { SetSize(); }, [&] { Add(); },    [&] { Insert(); },    [&] { Remove(); }, [&] { SetAt(); },
            [&] { Grow(); },    [&] { Append(); }, [&] { CopyOther(); }, [&] { Find(); },   [&] { _array.FreeExtra(); },
        };
        const int count = RandomOperations(20'000, 200'000);
        for (int done = 0; done < count && !::testing::Test::HasFailure(); ++done) {
            const int which = _dice.Upto(static_cast<int>(operations.size()) - 1);
            operations[static_cast<size_t>(which)]();
            if (_model.Size() > largestSize) SetSize();
            ASSERT_EQ(_array.Elements(), _model.elements) << "after operation " << done << ", kind " << which;
        }
    }

private:
    Element Any() { return Array::Make(_dice.Upto(20)); }
    int IndexUpto(int highest) { return _dice.Upto(highest); }

    void SetSize()
    {
        const int size = _dice.Upto(largestSize / 4);
        _array.SetSize(size, _dice.Upto(8) - 1);
        _model.SetSize(size);
    }
    void Add()
    {
        const Element value = Any();
        EXPECT_EQ(_array.Add(value), _model.Size());
        _model.Insert(_model.Size(), value, 1);
    }
    void Insert()
    {
        const Element value = Any();
        const int index = IndexUpto(_model.Size() + 5);
        const int count = 1 + _dice.Upto(6);
        _array.InsertAt(index, value, count);
        _model.Insert(index, value, count);
    }
    void Remove()
    {
        const int index = IndexUpto(_model.Size());
        const int count = _dice.Upto(std::min(8, _model.Size() - index));
        _array.RemoveAt(index, count);
        _model.Remove(index, count);
    }
    void SetAt()
    {
        if (_model.Size() == 0) return;
        const Element value = Any();
        const int index = IndexUpto(_model.Size() - 1);
        _array.SetAt(index, value);
        _model.elements[static_cast<size_t>(index)] = value;
    }
    void Grow()
    {
        const Element value = Any();
        const int index = IndexUpto(_model.Size() + 5);
        _array.SetAtGrow(index, value);
        if (index >= _model.Size()) _model.SetSize(index + 1);
        _model.elements[static_cast<size_t>(index)] = value;
    }
    void Append()
    {
        FillOther();
        EXPECT_EQ(_array.Append(_other), _model.Size());
        for (const Element& value : _other.Elements()) _model.Insert(_model.Size(), value, 1);
    }
    void CopyOther()
    {
        FillOther();
        _array.Copy(_other);
        _model.elements = _other.Elements();
    }
    void Find()
    {
        const Element value = Any();
        const int start = IndexUpto(_model.Size());
        EXPECT_EQ(_array.Find(value, start), _model.Find(value, start));
    }
    void FillOther()
    {
        _other.SetSize(0, 0);
        for (int count = _dice.Upto(30); count > 0; --count) _other.Add(Any());
    }

    Dice _dice;
    Array _array;
    Array _other;
    Model<Element> _model;
};

struct IntArray : OTypedArray<int> {
    using Element = int;
    static Element Make(int number) { return number; }
    std::vector<Element> Elements() const { return {GetData(), GetData() + GetSize()}; }
    int Find(Element value, int start) const { return OTypedArray<int>::Find(&value, start); }
};

/// The untyped layer under an element of any size.
template <size_t elementSize>
struct RawArray : OBaseArray<elementSize> {
    using Base = OBaseArray<elementSize>;
    using Element = std::array<unsigned char, elementSize>;

    static Element Make(int number)
    {
        Element element{};
        element.front() = static_cast<unsigned char>(number / 5);
        element.back() = static_cast<unsigned char>(element.back() + number);
        return element;
    }
    std::vector<Element> Elements() const
    {
        std::vector<Element> elements(static_cast<size_t>(this->GetSize()));
        if (!elements.empty()) std::memcpy(elements.data(), this->GetData(), elements.size() * elementSize);
        return elements;
    }
    void SetAt(int index, const Element& value) { std::memcpy(this->GetAddress(index), value.data(), elementSize); }
    void SetAtGrow(int index, const Element& value)
    {
        if (index >= this->GetSize()) this->SetSize(index + 1);
        SetAt(index, value);
    }
    int Add(const Element& value)
    {
        SetAtGrow(this->GetSize(), value);
        return this->GetSize() - 1;
    }
    void InsertAt(int index, const Element& value, int count)
    {
        Base::InsertAt(index, count);
        for (int place = index; place < index + count; ++place) SetAt(place, value);
    }
    int Find(const Element& value, int start) const { return Base::Find(value.data(), start); }
};

struct TextArray : OStringArray {
    using Element = std::string;
    static Element Make(int number) { return number == 0 ? std::string() : std::to_string(number * 7); }
    std::vector<Element> Elements() const
    {
        std::vector<Element> elements;
        for (int index = 0; index < GetSize(); ++index) elements.emplace_back((*this)[index].nstring());
        return elements;
    }
    void SetAt(int index, const Element& value) { OStringArray::SetAt(index, value.c_str()); }
    void SetAtGrow(int index, const Element& value) { OStringArray::SetAtGrow(index, value.c_str()); }
    int Add(const Element& value) { return OStringArray::Add(value.c_str()); }
    void InsertAt(int index, const Element& value, int count) { OStringArray::InsertAt(index, value.c_str(), count); }
    int Find(const Element& value, int start) const { return OStringArray::Find(value.c_str(), start); }
};

TEST(OArrayProperty, TypedArrayBehavesAsAVector)
{
    PropertyRun<IntArray>().Go();
}

TEST(OArrayProperty, BaseArrayOfSixBytesBehavesAsAVector)
{
    PropertyRun<RawArray<6>>().Go();
}

TEST(OArrayProperty, BaseArrayOfOneByteBehavesAsAVector)
{
    PropertyRun<RawArray<1>>().Go();
}

TEST(OArrayProperty, BaseArrayOfTwentyFourBytesBehavesAsAVector)
{
    PropertyRun<RawArray<24>>().Go();
}

TEST(OArrayProperty, StringArrayBehavesAsAVector)
{
    PropertyRun<TextArray>().Go();
}

class OStringArrayProperty : public ::testing::Test {
protected:
    const int rounds = RandomOperations(1'000, 20'000);

    /// A new random array of up to nine texts, some of them empty.
    void Roll()
    {
        array.RemoveAll();
        for (int count = dice.Upto(9); count > 0; --count) array.Add(TextArray::Make(dice.Upto(5)));
        elements = array.Elements();
    }

    Dice dice;
    TextArray array;
    std::vector<std::string> elements;
};

TEST_F(OStringArrayProperty, SplitTakesApartWhatJoinPutTogether)
{
    for (int round = 0; round < rounds; ++round) {
        Roll();
        array.Add("end"); // a single empty element would join to nothing
        OString joined;
        array.Join(joined, "--");
        TextArray pieces;
        pieces.Split(joined.nstring(), "--");
        ASSERT_EQ(pieces.Elements(), array.Elements()) << joined.nstring();
        pieces.Split(joined.wstring(), L"--");
        ASSERT_EQ(pieces.Elements(), array.Elements()) << joined.nstring();
    }
}

template <typename Char>
std::vector<std::string> Repacked(const OStringArray& array, int mode)
{
    OBuffer<Char> packed;
    array.Pack(packed, mode);
    TextArray unpacked;
    unpacked.Unpack(packed, mode);
    return unpacked.Elements();
}

TEST_F(OStringArrayProperty, UnpackGivesWhatWasPackedInCountedAndLineMode)
{
    for (int round = 0; round < rounds; ++round) {
        Roll();
        ASSERT_EQ(Repacked<char>(array, OStringArray::packCounted), elements);
        ASSERT_EQ(Repacked<wchar_t>(array, OStringArray::packCounted), elements);
        ASSERT_EQ(Repacked<char>(array, OStringArray::packLines), elements);
        ASSERT_EQ(Repacked<wchar_t>(array, OStringArray::packLines), elements);
    }
}

TEST_F(OStringArrayProperty, TerminatedModeLosesJustTheEmptyTexts)
{
    for (int round = 0; round < rounds; ++round) {
        Roll();
        std::erase(elements, "");
        ASSERT_EQ(Repacked<char>(array, OStringArray::packTerminated), elements);
        ASSERT_EQ(Repacked<wchar_t>(array, OStringArray::packTerminated), elements);
        array.RemoveEmpty();
        ASSERT_EQ(array.Elements(), elements);
    }
}

TEST_F(OStringArrayProperty, SortOrdersAsTheBytesDo)
{
    for (int round = 0; round < rounds; ++round) {
        Roll();
        std::sort(elements.begin(), elements.end());
        array.Sort();
        ASSERT_EQ(array.Elements(), elements);
        std::reverse(elements.begin(), elements.end());
        array.SortDescending();
        ASSERT_EQ(array.Elements(), elements);
    }
}

} // namespace
