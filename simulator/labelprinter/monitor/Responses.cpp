// SPDX-License-Identifier: MIT
#include "labelprinter/monitor/Responses.h"

Responses& Responses::Instance()
{
    static Responses instance;
    return instance;
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
