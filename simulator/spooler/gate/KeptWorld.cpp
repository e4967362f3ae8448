// SPDX-License-Identifier: MIT
#include "spooler/gate/KeptWorld.h"

#include "spooler/config/ConfigWriter.h"
#include "spooler/config/SavedFile.h"

#include <new>
#include <utility>

void KeptWorld::KeepIn(std::wstring path)
{
    _path = std::move(path);
    _text.clear();
    _failed = false;
}

DWORD KeptWorld::Update(World& world) noexcept
{
    if (_path.empty()) return ERROR_SUCCESS;
    DWORD error = ERROR_NOT_ENOUGH_MEMORY;
    try {
        std::string text = ConfigurationText(world);
        if (text == _text) return ERROR_SUCCESS;
        error = WriteSavedFile(_path, text);
        if (error == ERROR_SUCCESS) _text = std::move(text);
    } catch (const std::bad_alloc&) { // as `error` says
    }
    const bool isNews = !std::exchange(_failed, error != ERROR_SUCCESS);
    return isNews ? error : ERROR_SUCCESS;
}
