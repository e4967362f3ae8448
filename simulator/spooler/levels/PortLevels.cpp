// SPDX-License-Identifier: MIT
#include "spooler/levels/PortLevels.h"

#include "spooler/SpoolerError.h"

#include <algorithm>
#include <array>

namespace {

void PackInfo1(PackedWriter& writer, const PortRecord& port)
{
    writer.Text(writer.Add<PORT_INFO_1W>().pName, port.name);
}

void PackInfo2(PackedWriter& writer, const PortRecord& port)
{
    auto& info = writer.Add<PORT_INFO_2W>();
    writer.Text(info.pPortName, port.name);
    writer.Text(info.pMonitorName, port.monitorName);
    writer.Text(info.pDescription, port.description);
    info.fPortType = port.type;
}

struct PortLevel {
    DWORD level;
    size_t size;
    void (*pack)(PackedWriter& writer, const PortRecord& port);
};

constexpr std::array portLevels{
    PortLevel{1, sizeof(PORT_INFO_1W), PackInfo1},
    PortLevel{2, sizeof(PORT_INFO_2W), PackInfo2},
};

} // namespace

PackedWriter PackPorts(const std::vector<PortRecord>& ports, DWORD level)
{
    const auto found = std::ranges::find(portLevels, level, &PortLevel::level);
    Require(found != portLevels.end(), ERROR_INVALID_LEVEL);
    PackedWriter writer(found->size, ports.size());
    for (const PortRecord& port : ports) found->pack(writer, port);
    return writer;
}
