// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "foundation/files/OStream.h"

/// A file: a stream to write to that can also be read and positioned.
///
/// Ownership: the file handle, closed by `Close` and by the destructor. It can't be copied.
/// Errors:    nothing throws and no error is kept. `Open` answers false; on a closed file every operation gives 0.
/// Units:     bytes; sizes and positions beyond 32 bits aren't handled.
/// Threading: one thread at a time.
class OFile : public OCore::OStream {
public:
    // Flags of Open, combined by '|'. Without a sharing flag others may read and write.
    static constexpr DWORD writable = 0x1;         ///< read and write, and empty the file at once; otherwise read only
    static constexpr DWORD shareNothing = 0x10;    ///< others can't open it
    static constexpr DWORD shareReading = 0x20;    ///< others may read
    static constexpr DWORD shareWriting = 0x30;    ///< others may write
    static constexpr DWORD createMissing = 0x1000; ///< make the file if it isn't there
    static constexpr DWORD appending = 0x2000;     ///< with `writable`: keep the content and start at its end

    OFile() = default;
    /// Opens at once; `IsOpen` tells whether that went well.
    OFile(const OString& path, DWORD flags);
    ~OFile() override;

    DWORD WriteRaw(const void* data, DWORD count) override;
    /// As in any stream, but a closed file takes nothing into its buffer.
    DWORD Write(const void* data, DWORD count) override;

    /// Closes the file that is open, if any, and opens another. The path is stored in any case.
    virtual bool Open(const OString& path, DWORD flags);
    /// Flushes and closes.
    virtual void Close();
    /// Flushes and moves the position by `offset` from `origin` (FILE_BEGIN, FILE_CURRENT, FILE_END); gives the new
    /// one.
    virtual DWORD Seek(LONG offset, DWORD origin);
    /// The size on disk; what is still in the buffer doesn't count.
    virtual DWORD GetLength();
    /// Gives the bytes read, which are fewer than `count` at the end only.
    virtual DWORD Read(void* data, DWORD count);

    bool IsOpen() const noexcept { return static_cast<bool>(_file); }
    const OString& GetPath() const noexcept { return _path; }
    /// The path's part after the last '\'.
    OString GetFileName() const;

    /// Reads up to and including the next line feed, in the stream's code page. Gives false if nothing is left of the
    /// line without its line end, so an empty line ends a reading loop just as the end of the file does.
    bool ReadLine(OString& line);

    /// Appends the lines of a file, however they end, to `lines`; false if the file can't be opened.
    static bool ReadLines(const OString& path, OStringArray& lines);
    /// Replaces the content of a file by the lines, each followed by "\r\n"; makes the file if need be. False if it
    /// can't be opened.
    static bool WriteLinesToFile(const OString& path, const OStringArray& lines);

    /// Makes a directory, and those above it if need be. False also if it is there already.
    static bool CreateDirectories(const OString& path);
    /// Whether the file can be opened for reading; one that can't counts as absent.
    static bool FileExists(const OString& path);
    static bool Delete(const OString& path);
    static bool Copy(const OString& from, const OString& to, bool failIfExists);
    /// A path in the directory for temporary files; with `unique` 0 the file is made. Empty on failure.
    static OString GetTempName(const OString& prefix, UINT unique);

    /// Read-only, hidden, system, archive and temporary as FILE_ATTRIBUTE bits, or -1.
    static int GetAttributes(const OString& path);
    /// 0 sets a file without attributes.
    static bool SetAttributes(const OString& path, DWORD attributes);

    /// Any of the times may be null. False if the file can't be opened for reading.
    static bool GetTimes(const OString& path, FILETIME* creation, FILETIME* lastAccess, FILETIME* lastWrite);
    /// A null time isn't changed. True in every case.
    static bool SetTimes(const OString& path, const FILETIME* creation, const FILETIME* lastAccess,
                         const FILETIME* lastWrite);

private:
    bool OpenClosed(const OString& path, DWORD flags);

    OFileHandle _file; ///< null when closed
    OString _path;
};
