// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <winspool.h>

#include <memory>
#include <string>
#include <vector>

/// One entry of a batch, and what it points at.
struct ScriptedEntry {
    WORD type = JOB_NOTIFY_TYPE;
    WORD field = 0;
    DWORD id = 0;
    DWORD number = 0;
    std::vector<BYTE> bytes; ///< what the entry's pointer points at, if `pointsAtBytes`
    bool pointsAtBytes = false;

    static ScriptedEntry Job(DWORD jobId, WORD field, DWORD number);
    static ScriptedEntry JobDevMode(DWORD jobId, const DEVMODEW& devMode);
    static ScriptedEntry JobNull(DWORD jobId, WORD field); ///< with a null pointer
    static ScriptedEntry Printer(WORD field, DWORD number);
    static ScriptedEntry Printer(WORD field, const std::wstring& text);
    static ScriptedEntry PrinterNull(WORD field); ///< with a null pointer
};

/// What one call of FindNextPrinterChangeNotification gives.
struct ScriptedBatch {
    DWORD change = PRINTER_CHANGE_SET_JOB;
    std::vector<ScriptedEntry> entries;
    bool hasInfo = true;        ///< false: no info block comes
    bool fails = false;         ///< the call fails
    DWORD flags = 0;            ///< of the info block
    void (*action)() = nullptr; ///< runs in the call

    ScriptedBatch() = default;
    ScriptedBatch(std::initializer_list<ScriptedEntry> list) : entries(list) {}
    ScriptedBatch(DWORD changeWord, std::initializer_list<ScriptedEntry> list) : change(changeWord), entries(list) {}
};

/// Stands for the change notifications of the spooler, for the whole test program, while one lives: a test queues
/// batches, and whoever watches a printer gets them, in order. Time stands still for watchers: their waits end only
/// when the test says so. Everything else of the spooler stays as it is. One at a time.
class ScriptedNotices {
public:
    ScriptedNotices();
    ScriptedNotices(const ScriptedNotices&) = delete;
    ScriptedNotices& operator=(const ScriptedNotices&) = delete;
    ~ScriptedNotices();

    /// What a watcher asked for.
    struct Request {
        HANDLE printer;
        DWORD filter;
        DWORD options;
        DWORD version;
        DWORD flags;
        std::vector<std::pair<WORD, std::vector<WORD>>> fields; ///< of each type
    };

    void Queue(ScriptedBatch batch);

    /// The next requests to watch a printer fail.
    void RefuseWatching();

    std::vector<Request> Requests() const;

    /// Batches that nobody has fetched yet.
    size_t Waiting() const;

    /// Lets a second pass for the watcher, who waits. Returns when he waits once more.
    void PassQuietSecond();

    /// Ends the watcher's wait with that result.
    void EndWait(DWORD result);

    /// Waits until all that was queued has been handled and every watcher waits for more; false if that takes too long.
    bool WaitUntilIdle() const;

    /// The time-out of the last wait of a watcher.
    DWORD WaitTimeout() const;

    int OpenNotifications() const;
    int UnfreedBlocks() const;
    int Fetches() const; ///< calls of FindNextPrinterChangeNotification

private:
    class Hooks;
    std::unique_ptr<Hooks> _hooks;
};
