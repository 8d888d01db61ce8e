"""What the simulated boards measure, computed apart from the program.

The formulas are those that core/drivers/simulated/SimulatedSignals.h and
core/boards/ConverterCounts.h tell. A script that decodes a saved folder
compares it with these functions; run as a program, this file compares them with
the lines of dump_simulated_signals on standard input.

Voltage ranges are pairs (first, second); board numbers are places in the
catalogue of simulated boards, from 0.
"""

import math
import struct
import sys

SHAPES = ("sine", "square", "triangle", "noise", "spike")


def scramble(x):
    x ^= x >> 16
    x = x * 0x7FEB352D & 0xFFFFFFFF
    x ^= x >> 15
    x = x * 0x846CA68B & 0xFFFFFFFF
    return x ^ x >> 16


def triangle(q, period):
    return 1.0 - abs(4.0 * q / period - 2.0)


def level(board, channel, index, wave_period, spike_period):
    """Level from -1 to 1 of a channel at an index."""
    shape = SHAPES[(board + channel) % 5]
    period = {"noise": 16384, "spike": spike_period}.get(shape, wave_period)
    q = index % period
    if shape == "sine":
        return math.sin(2.0 * math.pi * q / period)
    if shape == "square":
        return 1.0 if 2 * q < period else -1.0
    if shape == "triangle":
        return triangle(q, period)
    if shape == "noise":
        seed = 65536 * board + 1024 * channel
        return scramble((seed + q) & 0xFFFFFFFF) / 2147483648.0 - 1.0
    return 1.0 if q == period // 2 else 0.0


def code(board, channel, limits, bits, signal_level):
    """Converter code of a level in a range."""
    first, second = limits
    amplitude = 5.0 - 0.5 * (channel // 5 % 8)
    value = 12.0 + 8.0 * signal_level if second == 20.0 else amplitude * signal_level
    position = (value - first) / (second - first) * 2**bits
    return round(min(max(position, 0.0), 2.0**bits - 1.0))  # halves to even


def value_of(converter_code, limits, bits):
    first, second = limits
    return first + (second - first) * converter_code / 2**bits


def polled_value(board, channel, limits, bits, ordinal):
    """Value of a channel in the polled scan of this ordinal (a double)."""
    signal_level = level(board, channel, ordinal, 40 + 10 * (channel % 7), 100)
    return value_of(code(board, channel, limits, bits, signal_level), limits, bits)


def stream_code(board, channel, limits, bits, scan_rate, scan):
    """Converter code of a channel in a scan of a stream; scan_rate is the rate by the channels."""
    period = max(20, round(scan_rate / (10.0 + 5.0 * (channel % 7))))
    return code(board, channel, limits, bits, level(board, channel, scan, period, 100000))


def stream_value(board, channel, limits, bits, scan_rate, scan):
    """The 32-bit float that a stream of analog values hands over."""
    exact = value_of(stream_code(board, channel, limits, bits, scan_rate, scan), limits, bits)
    return struct.unpack("<f", struct.pack("<f", exact))[0]


def stream_count(board, channel, limits, bits, scan_rate, scan, tagged=False):
    """The signed 16-bit count that a stream of raw counts hands over."""
    converter_code = stream_code(board, channel, limits, bits, scan_rate, scan)
    if bits == 16:
        return converter_code - 32768
    word = converter_code | ((channel & 15) << 12 if tagged else 0)
    return word - 65536 if word >= 32768 else word


def celsius(channel, expansion, ordinal):
    """Temperature of a thermocouple input at the ordinal of the reading among those of that input."""
    return 100.0 + 2.0 * channel + 5.0 * expansion + 50.0 * triangle(ordinal % 200, 200)


def port(number, ordinal):
    """State of a digital port at the ordinal of the board's reading."""
    return (ordinal + 16 * number) % 256


def expected(words):
    """What a line of the dump should say, from the words before its last."""
    kind = words[0]
    if kind == "port":
        return float(port(int(words[1]), int(words[2])))
    if kind == "celsius":
        return celsius(int(words[1]), int(words[2]), int(words[3]))
    board, channel, bits = (int(word) for word in words[1:4])
    limits = (float(words[4]), float(words[5]))
    if kind == "polled":
        return polled_value(board, channel, limits, bits, int(words[6]))
    rate, scan = float(words[6]), int(words[7])
    if kind == "value":
        return stream_value(board, channel, limits, bits, rate, scan)
    return float(stream_count(board, channel, limits, bits, rate, scan, kind == "tagged"))


def main():
    wrong = 0
    lines = 0
    for line in sys.stdin:
        words = line.split()
        lines += 1
        tolerance = 1e-6 if words[0] == "celsius" else 0.0  # temperatures are solved from voltages
        if abs(float(words[-1]) - expected(words[:-1])) > tolerance:
            wrong += 1
            print("differs:", line.strip(), "expected", expected(words[:-1]))
    print(f"{lines} lines, {wrong} differ")
    sys.exit(0 if lines > 1000 and wrong == 0 else 1)


if __name__ == "__main__":
    main()
