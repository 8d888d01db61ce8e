#include "core/drivers/comedi/ComediBoards.h"

#include "core/drivers/comedi/ComediAnalogBoard.h"
#include "core/drivers/comedi/ComediDevice.h"
#include "core/drivers/comedi/ComediDigitalBoard.h"
#include "core/drivers/comedi/ComediMapping.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <map>
#include <system_error>

namespace tracelet {
namespace {

// Device nodes by number. Anything else of that name, which opening might wait for, is left alone.
std::map<std::int32_t, std::string> NodesIn(const std::string& folder) {
    std::map<std::int32_t, std::string> nodes;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        const std::optional<std::int32_t> number = NodeNumber(entry->path().filename().string());
        if (number && entry->is_character_file(unknown))
            nodes.emplace(*number, entry->path().string());
    }
    return nodes;
}

void AddUnusable(BoardList& boards, const std::string& node) {
    const int error = comedi_errno();
    if (error == ENODEV || error == ENXIO || error == ENOENT) // no board is attached
        return;
    const std::string reason = LastComediError().what();
    boards.analog.push_back({node, "Comedi", reason, false, nullptr});
    boards.digital.push_back({node, "Comedi", reason, false, nullptr});
}

void AddAnalog(BoardList& boards, const std::string& node, comedi_t* device, unsigned int subdevice) {
    const std::string name = comedi_get_board_name(device);
    const std::string driver = comedi_get_driver_name(device);
    try {
        auto board = std::make_shared<ComediAnalogBoard>(node, device, subdevice);
        boards.analog.push_back({name, driver, "", false, std::move(board)});
    } catch (const RunTimeError& error) {
        boards.analog.push_back({name, driver, error.what(), false, nullptr});
    }
}

void AddBoardsOf(BoardList& boards, const std::string& node) {
    const ComediHandle device(comedi_open(node.c_str()));
    if (!device) {
        AddUnusable(boards, node);
        return;
    }
    const auto subdevices = static_cast<unsigned int>(std::max(comedi_get_n_subdevices(device.get()), 0));
    for (unsigned int subdevice = 0; subdevice < subdevices; ++subdevice) {
        if (comedi_get_subdevice_type(device.get(), subdevice) == COMEDI_SUBD_AI)
            AddAnalog(boards, node, device.get(), subdevice);
    }
    auto digital = std::make_shared<ComediDigitalBoard>(node, device.get());
    const DigitalBoardInfo& info = digital->Info();
    if (info.portCount > 0)
        boards.digital.push_back({info.name, info.driver, "", false, digital});
}

} // namespace

void FindComediBoards(BoardList& boards, const std::string& folder) {
    // Codes at the ends of a range are what the converter gave: readings like any other.
    comedi_set_global_oor_behavior(COMEDI_OOR_NUMBER);
    for (const auto& [number, node] : NodesIn(folder))
        AddBoardsOf(boards, node);
}

} // namespace tracelet
