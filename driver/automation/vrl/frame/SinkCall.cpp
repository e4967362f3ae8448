// SPDX-License-Identifier: MIT
#include "vrl/frame/SinkCall.h"

HRESULT CallSink(const ForeignPtr<IDispatch>& sink, DISPID eventId, const EventArguments& arguments) noexcept
{
    VARIANT answer;
    ::VariantInit(&answer);
    const HRESULT result = Contain([&] {
        DISPPARAMS parameters = arguments.AsDispParams();
        return sink->Invoke(eventId, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &answer, nullptr,
                            nullptr);
    });
    Contain([&] { ::VariantClear(&answer); }); // which may hold an object of the client's
    return result;
}
