// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <oaidl.h>

#include <string>

/// Type information put into words, so that a whole interface compares with a text.

/// The name of a type.
std::string TypeName(ITypeInfo& type);

/// The help text of a type.
std::string TypeHelp(ITypeInfo& type);

/// One line for each member in the order of the slots:
/// "7 0xb method SendFile([in] BSTR argFileName, [in] BSTR argJobName): method SendFile"
/// with slot, dispatch number, kind (method, get, put), name, arguments and help text. A dispatch interface has no
/// slots and so begins with the number.
std::string MembersText(ITypeInfo& type);

/// One line for each interface of a class: "[default] IPrinter", "[default, source] _IPrinterEvents".
std::string ImplementedText(ITypeInfo& type);
