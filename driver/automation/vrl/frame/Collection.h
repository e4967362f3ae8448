// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/OLockGuard.h"
#include "foundation/arrays/OPointerArray.h"
#include "vrl/frame/Automation.h"
#include "vrl/frame/ForeignPtr.h"
#include "vrl/frame/SnapshotEnumerator.h"
#include "vrl/frame/VRException.h"

#include <utility>
#include <vector>

/// How an enumerator gives out objects as VARIANTs of VT_DISPATCH; one that isn't there goes out as null.
struct DispatchPolicy {
    using Interface = IEnumVARIANT;
    using Item = VARIANT;
    using Value = ForeignPtr<IDispatch>;
    static HRESULT CopyOut(const Value& value, Item* item) noexcept
    {
        item->vt = VT_DISPATCH;
        item->pdispVal = value.Copy().Detach();
        return S_OK;
    }
    static void Clear(Item* item) noexcept
    {
        ForeignPtr<IDispatch>::Own(item->pdispVal).Reset();
        item->vt = VT_EMPTY;
    }
};

/// What a collection class holds: objects of one interface, ours or the client's own, in order of adding. The same one
/// may be there more than once.
///
/// Ownership: one reference for each entry.
/// Threading: any thread. The lock is held over the array only: members of the entries are called outside of it, on
///            entries that are held meanwhile, so no object that blocks or calls back keeps others from theirs.
/// Errors:    std::bad_alloc, where nothing else is said.
template <class Interface>
class Collection {
public:
    using Entry = ForeignPtr<Interface>;

    Collection() = default;
    Collection(const Collection&) = delete;
    Collection& operator=(const Collection&) = delete;
    ~Collection() { RemoveAll(); }

    /// The lock, which is recursive, for those who look and change in one step.
    OCriticalSection& Lock() const noexcept { return _lock; }

    int GetCount() const noexcept
    {
        OLockGuard guard(_lock);
        return _entries.GetSize();
    }

    /// Puts an object at the end, with the reference that the entry holds. No object is no entry.
    void Add(Entry entry)
    {
        if (!entry) return;
        OLockGuard guard(_lock);
        _entries.Add(entry.Get());
        static_cast<void>(entry.Detach());
    }

    /// Takes the first entry of an object out and lets go of it. False if there is none.
    bool Remove(const Interface* object)
    {
        Entry gone; // before the guard, so that it goes after the lock has been left
        OLockGuard guard(_lock);
        const int index = _entries.Find(object);
        if (index < 0) return false;
        gone = TakeOut(index);
        return true;
    }

    /// Lets go of all entries that are there, from the first to the last.
    void RemoveAll() noexcept
    {
        for (int left = GetCount(); left > 0; --left) {
            Entry gone;
            OLockGuard guard(_lock);
            if (!_entries.IsEmpty()) gone = TakeOut(0);
        }
    }

    /// The entry of a number from 1 on. Throws `InvalidArgument_E` if there is none.
    Entry At(long number) const
    {
        OLockGuard guard(_lock);
        if (number < 1 || number > _entries.GetSize()) throw InvalidArgument_E();
        return Entry::Share(_entries.GetAt(number - 1));
    }

    /// All entries as they are now.
    std::vector<Entry> Entries() const
    {
        OLockGuard guard(_lock);
        std::vector<Entry> entries;
        entries.reserve(static_cast<size_t>(_entries.GetSize()));
        for (int index = 0; index < _entries.GetSize(); ++index) {
            if (Entry entry = Entry::Share(_entries.GetAt(index))) entries.push_back(std::move(entry));
        }
        return entries;
    }

    /// A new enumerator of the entries as they are now.
    Microsoft::WRL::ComPtr<IEnumVARIANT> NewEnum() const
    {
        std::vector<ForeignPtr<IDispatch>> objects;
        for (const Entry& entry : Entries()) {
            objects.push_back(ForeignPtr<IDispatch>::Query(entry.Get(), IID_IDispatch));
        }
        return SnapshotEnumerator<DispatchPolicy>::Create(std::move(objects));
    }

private:
    Entry TakeOut(int index) REQUIRES(_lock)
    {
        Entry entry = Entry::Own(_entries.GetAt(index));
        _entries.RemoveAt(index, 1);
        return entry;
    }

    mutable OCriticalSection _lock;
    OPointerArray<Interface> _entries GUARDED_BY(_lock); // each with a reference of its own
};
