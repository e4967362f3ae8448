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
    _keeping = !_path.empty();
}

DWORD KeptWorld::Update(World& world) noexcept
{
    if (!_keeping) return ERROR_SUCCESS;
    DWORD error = ERROR_NOT_ENOUGH_MEMORY;
    try {
        std::string text = ConfigurationText(world);
        if (text == _text) return ERROR_SUCCESS;
        error = WriteSavedFile(_path, text);
        _text = std::move(text);
    } catch (const std::bad_alloc&) { // as `error` says
    }
    _keeping = error == ERROR_SUCCESS;
    return error;
}
