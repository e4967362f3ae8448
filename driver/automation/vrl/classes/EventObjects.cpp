// SPDX-License-Identifier: MIT
#include "vrl/tracking/EventObjects.h"

#include "foundation/Assert.h"
#include "vrl/classes/Printer.h"
#include "vrl/classes/PrintJob.h"
#include "vrl/frame/Bstr.h"

using Microsoft::WRL::ComPtr;

namespace {

/// A new object of the class. `initialize` binds it.
template <class Class, class Interface, class Initialize>
ComPtr<Interface> Make(Initialize&& initialize)
{
    ComPtr<Class> made;
    HRESULT hr = CreateInstance(made.GetAddressOf());
    DEBUG_ASSERT(((HRESULT)(hr) >= 0));
    if (FAILED(hr)) return nullptr;
    hr = initialize(*made.Get());
    DEBUG_ASSERT(((HRESULT)(hr) >= 0));
    return made;
}

} // namespace

ComPtr<IPrinter> MakeEventPrinter(const OString& printerName)
{
    const OBstr name = ToBstr(printerName);
    return Make<Printer, IPrinter>([&](Printer& printer) { return printer.Initialize(name.Get()); });
}

ComPtr<IPrintJob> MakeEventJob(const OString& printerName, DWORD jobID)
{
    const OBstr name = ToBstr(printerName);
    return Make<PrintJob, IPrintJob>(
        [&](PrintJob& job) { return job.Initialize(name.Get(), static_cast<long>(jobID)); });
}
