// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <gmock/gmock.h>

#include <string>

#include "ScratchKey.h"
#include "support/TemporaryDirectory.h"

namespace {

/// Exchanges texts with the registry editor of the platform.
class RegistryEditor : public ::testing::Test {
protected:
    /// Runs the editor without its windows and waits for it.
    static void Run(const std::wstring& arguments)
    {
        constexpr DWORD limitMs = 60'000;
        std::wstring command = L"regedit.exe " + arguments;
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        ASSERT_TRUE(
            ::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
        const OWaitHandle thread(process.hThread);
        const OWaitHandle running(process.hProcess);
        ASSERT_EQ(::WaitForSingleObject(running.Get(), limitMs), WAIT_OBJECT_0);
        DWORD exitCode = 1;
        ::GetExitCodeProcess(running.Get(), &exitCode);
        ASSERT_EQ(exitCode, 0u);
    }

    /// What the editor writes of the scratch key.
    OStringArray& WrittenByTheEditor()
    {
        Run(L"/E \"" + directory.Path(L"key.reg") + L"\" \"" + scratch.NativePath() + L"\"");
        const std::string bytes = directory.Contents(L"key.reg");
        EXPECT_TRUE(bytes.starts_with("\xFF\xFE")) << "16-bit units with a mark";
        std::wstring text((bytes.size() - 2) / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), bytes.data() + 2, text.size() * sizeof(wchar_t));
        lines.Split(text.c_str(), L"\r\n");
        return lines;
    }

    void LetTheEditorRead()
    {
        std::wstring text = L"\xFEFFWindows Registry Editor Version 5.00\r\n\r\n";
        for (int index = 0; index < lines.GetSize(); ++index) text += std::wstring(lines[index].wstring()) + L"\r\n";
        Run(L"/S \"" + directory.Make(L"ours.reg", BytesOf(text)) + L"\"");
    }

    TemporaryDirectory directory;
    ScratchKey scratch;
    ORegistry registry{scratch.Path()};
    OStringArray lines;
};

TEST_F(RegistryEditor, WritesWhatComesBackAsFarAsTheGrammarGoes)
{
    const std::string longBytes(300, '\x5A');
    scratch.SetText(L"A\\B", L"Text", L"a \\ \"b\" \x20AC");
    scratch.SetNumber(L"A\\B", L"Number", 0x89ABCDEF);
    scratch.Set(L"A\\B", L"Bytes", REG_BINARY, longBytes);
    scratch.Set(L"A\\B", L"List", REG_MULTI_SZ, BytesOf({L"one\0two\0", 9}));
    scratch.Set(L"A\\B", L"Big", REG_QWORD, "12345678");
    scratch.Set(L"A/B:C", L"Path", REG_EXPAND_SZ, BytesOf({L"%TEMP%", 7}));
    scratch.SetText(L"A/B:C", L"a\\b", L"");
    scratch.SetText(L"A/B:C", L"", L"default");
    WrittenByTheEditor();

    ASSERT_TRUE(registry.Delete("*"));
    EXPECT_TRUE(registry.ImportLines(lines, 0));
    EXPECT_EQ(scratch.Tree(),
              (StoredTree{
                  {L"",      {}                              },
                  {L"A",     {}                              },
                  {L"A\\B",
                   {{L"Text", {REG_SZ, BytesOf({L"a \\ \"b\" \x20AC", 10})}},
                    {L"Number", {REG_DWORD, "\xEF\xCD\xAB\x89"}},
                    {L"Bytes", {REG_BINARY, longBytes}},
                    {L"List", {REG_MULTI_SZ, BytesOf({L"one\0two\0", 9})}},
                    {L"Big", {REG_BINARY, "12345678"}}}      }, // another type than binary and list
                  {L"A/B:C",
                   {{L"Path", {REG_BINARY, BytesOf({L"%TEMP%", 7})}},
                    {L"a\\\\b", {REG_SZ, BytesOf({L"", 1})}}}}, // a name stays quoted inside; "@" is no name
    }));
}

TEST_F(RegistryEditor, ReadsWhatIsExported)
{
    scratch.SetText(L"A\\B", L"Text \"x\"\\", L"a \\ \"b\" \x20AC\"");
    scratch.SetNumber(L"A\\B", L"Number", 0x89ABCDEF);
    scratch.Set(L"A\\B", L"Bytes", REG_BINARY, std::string(300, '\x5A'));
    scratch.Set(L"A\\B", L"List", REG_MULTI_SZ, BytesOf({L"one\0two\0", 9}));
    scratch.Set(L"A/B:C", L"Path", REG_EXPAND_SZ, BytesOf({L"%TEMP%", 7}));
    const StoredTree before = scratch.Tree();
    ASSERT_TRUE(registry.ExportKey("", lines, ORegistry::exportDelete));

    scratch.SetNumber(L"C", L"Deleted by the first line", 1);
    LetTheEditorRead();
    EXPECT_EQ(scratch.Tree(), before);
}

} // namespace
