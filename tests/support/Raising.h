// SPDX-License-Identifier: MIT
#pragma once

#include "support/FaultOf.h"
#include "support/ForeignThrow.h"

#include <array>
#include <ostream>
#include <stdexcept>

/// One kind of exception that foreign code may raise.
struct RaisedKind {
    const char* name;
    void (*raise)();
};

inline void PrintTo(const RaisedKind& kind, std::ostream* out)
{
    *out << kind.name;
}

/// Whether an exception of any kind comes out of `body`, which is called as the wrapper of a method calls its work.
template <class Body>
bool RaisesOut(Body&& body)
{
    try {
        return FaultOf(body) != 0;
    } catch (...) {
        return true;
    }
}

/// All of them, for tests of the places where foreign code is called.
inline constexpr std::array raisedKinds{
    RaisedKind{"AccessViolation",     WriteToNowhere                                            },
    RaisedKind{"PlainCode",           [] { ::RaiseException(0xE0000001, 0, 0, nullptr); }       },
    RaisedKind{"OtherCompilersThrow", ThrowAsForeignCode                                        },
    RaisedKind{"OwnCompilersThrow",   [] { throw std::runtime_error("from a client's object"); }},
};
