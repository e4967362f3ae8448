// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/Answer.h"
#include "support/com/BstrText.h"
#include "support/product/ProductModule.h"
#include "support/spooler/SpoolerTest.h"

#include <oaidl.h>
#include <ocidl.h>
#include <wrl/client.h>

#include "vrl/Vorlane.h"

#include <string>

/// The product as its callers have it, over a fresh simulated world with the printer "Label": objects come from the
/// module that ships. At the end of each test the module must be free to go, and the spooler have everything back but
/// the one handle that each opening of a printer leaves behind.
class IntegrationTest : public SpoolerTest {
protected:
    template <class Interface>
    using ComPtr = Microsoft::WRL::ComPtr<Interface>;

    void SetUp() override;
    void TearDown() override;

    /// The module, loaded once for the process.
    static const ProductModule& Product();

    /// Lets the module take what memory it keeps for the life of the process, also that of its first failures.
    static void WarmUp();

    /// An object of a class that the module makes, without the registry and in this apartment.
    template <class Interface>
    static ComPtr<Interface> Create(REFCLSID classId)
    {
        ComPtr<Interface> object;
        const HRESULT result = Product().CreateInstance(classId, __uuidof(Interface), Address(object));
        EXPECT_EQ(result, S_OK);
        return object;
    }

    /// Wine keeps one reference on the class object of each object that it makes for a single-threaded apartment. This
    /// gives one of `classId` back; on Windows there is none, and nothing is done.
    static void GiveBackKeptClassObject(REFCLSID classId);

    static ComPtr<IPrinter> CreatePrinter() { return Create<IPrinter>(__uuidof(Printer)); }

    /// A `Printer` that is bound to `name`.
    static ComPtr<IPrinter> BoundPrinter(std::wstring_view name = printerName);

    static HRESULT Initialize(IPrinter& printer, std::wstring_view name);

    /// A text property, with S_OK.
    template <class Interface>
    static std::wstring Text(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*get)(BSTR*))
    {
        OwnedBstr text;
        EXPECT_EQ((object.*get)(text.Receive()), S_OK);
        return TextOf(text.Get());
    }

    /// A boolean property as it comes out, with S_OK.
    template <class Interface>
    static VARIANT_BOOL Bool(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*get)(VARIANT_BOOL*))
    {
        VARIANT_BOOL value = 99;
        EXPECT_EQ((object.*get)(&value), S_OK);
        return value;
    }

    static ComPtr<IPrinterStatus> StatusOf(IPrinter& printer);

    /// Adds a printer that is like "Label" but for its name, and not shared.
    static void AddPrinterNamed(const wchar_t* name);

    /// How often a printer's shared core was opened: each leaves a spooler handle open for good.
    static DWORD Openings();

    /// The call that started the one document so far.
    static SpoolerCallRecord StartedDocument();

    /// What was written into that document, while it is in the queue.
    static std::string SentBytes();

    template <class Interface>
    static void** Address(ComPtr<Interface>& object)
    {
        return reinterpret_cast<void**>(object.ReleaseAndGetAddressOf());
    }
};
