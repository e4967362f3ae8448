// SPDX-License-Identifier: MIT
#include "labelprinter/device/DeviceProperties.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::wstring_view blanks = L" \t";
constexpr std::wstring_view slow = L"slow";
constexpr std::wstring_view charging = L"charging";
constexpr DWORD fullBatteryPercent = 100;

constexpr wchar_t Lower(wchar_t character)
{
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

/// A word that stands for a value.
template <typename Value>
struct Word {
    std::wstring_view word;
    Value value;
};

constexpr std::array truthWords{
    Word<bool>{L"no",  false},
    Word<bool>{L"yes", true }
};
constexpr std::array openWords{
    Word<bool>{L"closed", false},
    Word<bool>{L"open",   true }
};
constexpr std::array faultWords{
    Word<bool>{L"ok",    false},
    Word<bool>{L"error", true }
};
constexpr std::array labelWords{
    Word<bool>{L"taken",   false},
    Word<bool>{L"waiting", true }
};
constexpr std::array connectionWords{
    Word<bool>{L"disconnected", false},
    Word<bool>{L"connected",    true }
};
constexpr std::array headWords{
    Word<Head>{L"closed", Head::Closed},
    Word<Head>{L"open",   Head::Open  },
    Word<Head>{L"error",  Head::Error }
};
constexpr std::array onErrorWords{
    Word<OnError>{L"wait",   OnError::Wait  },
    Word<OnError>{L"cancel", OnError::Cancel}
};
constexpr std::array monitorWords{
    Word<MonitorMood::Kind>{L"works", MonitorMood::Kind::Works},
    Word<MonitorMood::Kind>{slow,     MonitorMood::Kind::Slow },
    Word<MonitorMood::Kind>{L"fails", MonitorMood::Kind::Fails}
};
constexpr std::array queryWords{
    Word<QueryMood::Kind>{L"answered", QueryMood::Kind::Answered},
    Word<QueryMood::Kind>{slow,        QueryMood::Kind::Slow    },
    Word<QueryMood::Kind>{L"pending",  QueryMood::Kind::Pending },
    Word<QueryMood::Kind>{L"failed",   QueryMood::Kind::Failed  },
    Word<QueryMood::Kind>{L"lost",     QueryMood::Kind::Lost    }
};

template <const auto& words, typename Value>
bool ParseWord(std::wstring_view text, Value& value)
{
    const auto row = std::ranges::find_if(words, [=](const auto& one) { return SameWord(one.word, text); });
    if (row == words.end()) return false;
    value = row->value;
    return true;
}

template <const auto& words, typename Value>
std::wstring TextOfWord(Value value)
{
    return std::wstring(std::ranges::find(words, value, [](const auto& one) { return one.value; })->word);
}

template <auto field, const auto& words>
constexpr DeviceProperty WordProperty(std::wstring_view name, bool ofDevice = true)
{
    return {name, ofDevice,
            [](DeviceState& state, std::wstring_view value) { return ParseWord<words>(value, state.*field); },
            [](const DeviceState& state) { return TextOfWord<words>(state.*field); }};
}

template <DWORD DeviceState::*field, DWORD least>
constexpr DeviceProperty NumberProperty(std::wstring_view name)
{
    return {name, true,
            [](DeviceState& state, std::wstring_view value) {
                DWORD number = 0;
                if (!ParseNumber(value, number) || number < least) return false;
                state.*field = number;
                return true;
            },
            [](const DeviceState& state) { return std::to_wstring(state.*field); }};
}

/// Cuts a last word off the text; false if it isn't there.
bool CutLastWord(std::wstring_view& text, std::wstring_view word)
{
    if (text.size() < word.size() || !SameWord(text.substr(text.size() - word.size()), word)) return false;
    text = TrimmedText(text.substr(0, text.size() - word.size()));
    return true;
}

/// "endless", "out", or a number of labels.
bool ParseSupply(std::wstring_view text, Supply& supply)
{
    static constexpr std::array supplyWords{
        Word<Supply>{L"endless", endlessSupply},
        Word<Supply>{L"out",     0            }
    };
    if (ParseWord<supplyWords>(text, supply)) return true;
    CutLastWord(text, L"labels");
    DWORD labels = 0;
    if (!ParseNumber(text, labels) || labels == endlessSupply) return false;
    supply = labels;
    return true;
}

std::wstring TextOfSupply(Supply supply)
{
    if (supply == endlessSupply) return L"endless";
    return supply == 0 ? L"out" : std::to_wstring(supply) + L" labels";
}

template <Supply DeviceState::*field>
constexpr DeviceProperty SupplyProperty(std::wstring_view name)
{
    return {name, true, [](DeviceState& state, std::wstring_view value) { return ParseSupply(value, state.*field); },
            [](const DeviceState& state) { return TextOfSupply(state.*field); }};
}

/// "mains", or percents, followed by "charging".
bool SetBattery(DeviceState& state, std::wstring_view value)
{
    if (SameWord(value, L"mains")) {
        state.batteryPercent = onMains;
        state.charging = false;
        return true;
    }
    const bool isCharging = CutLastWord(value, charging);
    DWORD percent = 0;
    if (!ParseNumber(value, percent) || percent > fullBatteryPercent) return false;
    state.batteryPercent = percent;
    state.charging = isCharging;
    return true;
}

std::wstring GetBattery(const DeviceState& state)
{
    if (state.batteryPercent == onMains) return L"mains";
    std::wstring text = std::to_wstring(state.batteryPercent);
    if (state.charging) text.append(L" ").append(charging);
    return text;
}

/// A word, and after "slow" a number of milliseconds.
template <const auto& words, typename Mood>
bool ParseMood(std::wstring_view text, Mood& mood)
{
    Mood parsed;
    if (text.starts_with(slow) && text.size() > slow.size()) {
        if (!ParseNumber(TrimmedText(text.substr(slow.size())), parsed.delayMs)) return false;
        text = slow;
    }
    if (!ParseWord<words>(text, parsed.kind)) return false;
    mood = parsed;
    return true;
}

template <const auto& words, typename Mood>
std::wstring TextOfMood(const Mood& mood)
{
    std::wstring text = TextOfWord<words>(mood.kind);
    if (mood.kind == Mood::Kind::Slow) text.append(L" ").append(std::to_wstring(mood.delayMs));
    return text;
}

template <auto field, const auto& words>
constexpr DeviceProperty MoodProperty(std::wstring_view name)
{
    return {name, false,
            [](DeviceState& state, std::wstring_view value) { return ParseMood<words>(value, state.*field); },
            [](const DeviceState& state) { return TextOfMood<words>(state.*field); }};
}

constexpr DeviceProperty panelProperty{L"panel", false,
                                       [](DeviceState& state, std::wstring_view value) {
                                           state.panel = value;
                                           return true;
                                       },
                                       [](const DeviceState& state) { return state.panel; }};

constexpr std::array properties{
    SupplyProperty<&DeviceState::media>(L"media"),
    WordProperty<&DeviceState::jam, truthWords>(L"jam"),
    SupplyProperty<&DeviceState::ribbon>(L"ribbon"),
    WordProperty<&DeviceState::ribbonFault, truthWords>(L"ribbon fault"),
    WordProperty<&DeviceState::head, headWords>(L"head"),
    WordProperty<&DeviceState::cutterFault, faultWords>(L"cutter"),
    WordProperty<&DeviceState::doorOpen, openWords>(L"door"),
    WordProperty<&DeviceState::paused, truthWords>(L"pause"),
    WordProperty<&DeviceState::peeler, truthWords>(L"peeler"),
    WordProperty<&DeviceState::labelPresent, labelWords>(L"label"),
    DeviceProperty{L"battery", true, SetBattery, GetBattery},
    NumberProperty<&DeviceState::labelLength, 1>(L"label length"),
    NumberProperty<&DeviceState::speed, 1>(L"speed"),
    WordProperty<&DeviceState::verifier, truthWords>(L"verifier"),
    WordProperty<&DeviceState::onError, onErrorWords>(L"on error"),
    NumberProperty<&DeviceState::pages, 0>(L"pages"),
    NumberProperty<&DeviceState::distance, 0>(L"distance"),
    WordProperty<&DeviceState::connected, connectionWords>(L"connection", false),
    WordProperty<&DeviceState::bidirectional, truthWords>(L"bidirectional", false),
    WordProperty<&DeviceState::monitored, truthWords>(L"monitored", false),
    MoodProperty<&DeviceState::monitor, monitorWords>(L"monitor"),
    MoodProperty<&DeviceState::queries, queryWords>(L"queries"),
    panelProperty,
};

} // namespace

const DeviceProperty* FindDeviceProperty(std::wstring_view name)
{
    const auto* const row =
        std::ranges::find_if(properties, [=](const DeviceProperty& one) { return SameWord(one.name, name); });
    return row == properties.end() ? nullptr : row;
}

std::wstring_view TrimmedText(std::wstring_view text)
{
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool ParseNumber(std::wstring_view text, DWORD& number)
{
    constexpr size_t mostDigits = 9;
    if (text.empty() || text.size() > mostDigits) return false;
    DWORD parsed = 0;
    for (const wchar_t character : text) {
        if (character < L'0' || character > L'9') return false;
        parsed = parsed * 10 + static_cast<DWORD>(character - L'0');
    }
    number = parsed;
    return true;
}

bool SameWord(std::wstring_view left, std::wstring_view right)
{
    return std::ranges::equal(left, right, {}, Lower, Lower);
}
