// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>

// How a serial line is set. The numbers of all enumerations are what the settings file and the
// controller's baud command carry, so they never change. Every enumeration can hold any int: a
// settings file may name numbers that mean nothing, and those are kept as they are.

enum BaudRateType : int {
    BAUD50 = 0,
    BAUD75 = 1,
    BAUD110 = 2,
    BAUD134 = 3,
    BAUD150 = 4,
    BAUD200 = 5,
    BAUD300 = 6,
    BAUD600 = 7,
    BAUD1200 = 8,
    BAUD1800 = 9,
    BAUD2400 = 10,
    BAUD4800 = 11,
    BAUD9600 = 12,
    BAUD14400 = 13,
    BAUD19200 = 14,
    BAUD38400 = 15,
    BAUD56000 = 16,
    BAUD57600 = 17,
    BAUD76800 = 18,
    BAUD115200 = 19,
    BAUD128000 = 20,
    BAUD256000 = 21,
};

enum DataBitsType : int { DATA_5 = 0, DATA_6 = 1, DATA_7 = 2, DATA_8 = 3 };
enum ParityType : int { PAR_NONE = 0, PAR_ODD = 1, PAR_EVEN = 2, PAR_MARK = 3, PAR_SPACE = 4 };
enum StopBitsType : int { STOP_1 = 0, STOP_1_5 = 1, STOP_2 = 2 };
enum FlowType : int { FLOW_OFF = 0, FLOW_HARDWARE = 1, FLOW_XONXOFF = 2 };

struct PortSettings
{
    BaudRateType BaudRate = BAUD9600;
    DataBitsType DataBits = DATA_8;
    ParityType Parity = PAR_NONE;
    StopBitsType StopBits = STOP_1;
    FlowType FlowControl = FLOW_OFF;
    long Timeout_Millisec = 500;

    bool operator==(const PortSettings &) const = default;
};

// Bits per second; 0 for a number that names no rate.
constexpr int bitsPerSecond(BaudRateType rate)
{
    constexpr std::array<int, 22> rates = {50,    75,    110,   134,    150,    200,   300,   600,
                                           1200,  1800,  2400,  4800,   9600,   14400, 19200, 38400,
                                           56000, 57600, 76800, 115200, 128000, 256000};
    return rate >= BAUD50 && rate <= BAUD256000 ? rates[unsigned(rate)] : 0;
}
