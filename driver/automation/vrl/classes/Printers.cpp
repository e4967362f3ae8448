// SPDX-License-Identifier: MIT
#include "vrl/classes/Printers.h"

#include "vrl/classes/Printer.h"
#include "vrl/classes/PrinterBinding.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr DISPID createId = 0xb; // of Vorlane.idl

constexpr VARTYPE numberTypes[] = {VT_I4, VT_I2, VT_I8, VT_INT};

bool IsNumber(const VARIANT& argument)
{
    return std::find(std::begin(numberTypes), std::end(numberTypes), argument.vt) != std::end(numberTypes);
}

/// Takes a number over from the caller, whose VARIANT is empty afterwards. Throws `InvalidArgument_E` if it is no long.
long TakeNumber(VARIANT& argument)
{
    VARIANT number = argument;
    ::VariantInit(&argument);
    if (number.vt != VT_I4 && FAILED(::VariantChangeType(&number, &number, 0, VT_I4))) throw InvalidArgument_E();
    return number.lVal;
}

/// The text of a text; anything else has none.
OString NameFromVariant(const VARIANT& argument)
{
    return argument.vt == VT_BSTR ? FromBstr(argument.bstrVal) : OString();
}

/// The printer that an object argument is, with no reference for the caller. Throws `InvalidArgument_E`.
IPrinter* ResolvePrinterArgument(const VARIANT& argument)
{
    if (argument.vt != VT_DISPATCH) throw InvalidArgument_E();
    auto printer = ForeignPtr<IPrinter>::Query(argument.pdispVal, __uuidof(IPrinter));
    if (!printer) throw InvalidArgument_E();
    // Deliberate: the reference of the query stays on the object for good.
    return printer.Detach();
}

} // namespace

STDMETHODIMP Printers::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* returned,
                              EXCEPINFO* exception, UINT* argumentError) noexcept
{
    if (id != createId || !(flags & DISPATCH_METHOD)) {
        return Base::Invoke(id, iid, locale, flags, parameters, returned, exception, argumentError);
    }
    if (parameters && parameters->cArgs != 0) return DISP_E_BADPARAMCOUNT;
    IPrinter* made = nullptr;
    const HRESULT result = Create(&made);
    if (FAILED(result)) return result;
    Microsoft::WRL::ComPtr<IPrinter> printer(made);
    if (!returned) return S_OK;
    ::VariantInit(returned);
    returned->vt = VT_DISPATCH;
    returned->pdispVal = printer.Detach();
    return S_OK;
}

STDMETHODIMP Printers::get__NewEnum(IUnknown** retEnum) noexcept
{
    return Guard("Printers::get__NewEnum", [&] { StoreUntested(retEnum, _printers.NewEnum()); });
}

STDMETHODIMP Printers::get_Item(VARIANT Index, IPrinter** retPrinter) noexcept
{
    return Guard("Printers::get_Item", [&]() -> HRESULT {
        Entry entry;
        if (IsNumber(Index)) {
            entry = _printers.At(TakeNumber(Index));
        } else {
            if (Index.vt != VT_BSTR) throw InvalidArgument_E();
            const HRESULT result = FindByName(FromBstr(Index.bstrVal), entry);
            if (FAILED(result)) return result;
            if (!entry) throw PrinterNotRecognized_E();
        }
        StoreUntested(retPrinter, std::move(entry));
        return S_OK;
    });
}

STDMETHODIMP Printers::get_Count(long* retCount) noexcept
{
    return Guard("Printers::get_Count", [&] {
        CheckOut(retCount);
        *retCount = _printers.GetCount();
    });
}

STDMETHODIMP Printers::Create(IPrinter** retPrinter) noexcept
{
    return Guard("Printers::Create", [&]() -> HRESULT {
        Microsoft::WRL::ComPtr<Printer> printer;
        const HRESULT result = CreateInstance(printer.GetAddressOf());
        if (FAILED(result)) return result;
        Printer* const made = printer.Get();
        StoreUntested<IPrinter>(retPrinter, std::move(printer));
        // Deliberate: the caller takes the first reference.
        made->DropFirstReference();
        return S_OK;
    });
}

STDMETHODIMP Printers::Add(VARIANT argPrinter) noexcept
{
    return Guard("Printers::Add", [&]() -> HRESULT {
        const OString name = NameFromVariant(argPrinter);
        if (!name.IsEmpty()) return AddByName(name);
        _printers.Add(Entry::Share(ResolvePrinterArgument(argPrinter)));
        return S_OK;
    });
}

HRESULT Printers::AddByName(const OString& name)
{
    Microsoft::WRL::ComPtr<Printer> printer;
    HRESULT result = CreateInstance(printer.GetAddressOf());
    if (SUCCEEDED(result)) result = printer->Initialize(ToBstr(name).Get());
    if (SUCCEEDED(result)) _printers.Add(Entry::Share(printer.Get()));
    return result;
}

STDMETHODIMP Printers::Remove(VARIANT argPrinter) noexcept
{
    return Guard("Printers::Remove", [&]() -> HRESULT {
        OString name = NameFromVariant(argPrinter);
        if (name.IsEmpty()) {
            const HRESULT result = ReadPrinterName(ResolvePrinterArgument(argPrinter), name);
            if (FAILED(result)) return result;
        }
        Entry entry;
        const HRESULT result = FindByName(name, entry);
        if (FAILED(result)) return result;
        // Deliberate: a name that isn't there is a failure without a text.
        return entry && _printers.Remove(entry.Get()) ? S_OK : E_INVALIDARG;
    });
}

/// The first entry of that name, empty without one. A failure is that of an entry whose name can't be read.
HRESULT Printers::FindByName(const OString& name, Entry& found) const
{
    for (Entry& entry : _printers.Entries()) {
        OString entryName;
        const HRESULT result = ReadPrinterName(entry.Get(), entryName);
        if (FAILED(result)) return result;
        if (entryName.Compare(name) != 0) continue;
        found = std::move(entry);
        break;
    }
    return S_OK;
}

STDMETHODIMP Printers::RemoveAll() noexcept
{
    return Guard("Printers::RemoveAll", [&] { _printers.RemoveAll(); });
}
