// SPDX-License-Identifier: MIT
#include "support/com/Answer.h"

#include "support/com/ErrorInformation.h"

#include <iomanip>
#include <ostream>

std::ostream& operator<<(std::ostream& stream, const Answer& answer)
{
    return stream << "0x" << std::hex << static_cast<unsigned long>(answer.result) << std::dec << ' '
                  << std::quoted(answer.text);
}

Answer AnswerOf(HRESULT result)
{
    return {result, TakeErrorInformation().description};
}

Answer SystemAnswer(DWORD error)
{
    char text[512] = {};
    ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, error, LANG_USER_DEFAULT, text, sizeof text, nullptr);
    return {HRESULT_FROM_WIN32(error), text};
}
