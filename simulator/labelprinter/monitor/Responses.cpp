// SPDX-License-Identifier: MIT
#include "labelprinter/monitor/Responses.h"

namespace {

// Not made at its first use: that would take a thread index of the process at every load of the module, and none comes
// back when it is released.
Responses responses;

} // namespace

Responses& Responses::Instance()
{
    return responses;
}

void* Responses::Add(std::string answer)
{
    auto kept = std::make_unique<std::string>(std::move(answer));
    void* const handle = kept.get();
    const MutexLock guard(_lock);
    _answers.emplace(handle, std::move(kept));
    return handle;
}

void Responses::Remove(void* response)
{
    const MutexLock guard(_lock);
    _answers.erase(response);
}

std::string Responses::Get(void* response)
{
    const MutexLock guard(_lock);
    const auto answer = _answers.find(response);
    return answer == _answers.end() ? std::string() : *answer->second;
}
