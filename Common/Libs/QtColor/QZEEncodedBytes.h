#ifndef QZEENCODEDBYTES_H
#define QZEENCODEDBYTES_H

#include "QZEColor.h"

#include <QtGlobal>

#include <cstdint>
#include <cstring>

// The 8-bit sRGB encoding of a linear channel, exactly
// QZEColor::toByte(QZEColor::encodeSRGB(c)) for every float c (NaN and
// negatives give 0, +inf 255), without a power call.
//
// Gradients and planes encode thousands of channels per paint; the power call
// of encodeSRGB was most of their cost. The encoding never decreases, so it is
// known from the 255 least channels that reach each byte, found once by
// bisection. The float's bit pattern, cut to its exponent and 7 mantissa
// bits, picks a bucket whose byte is that of the bucket's first channel; the
// buckets are narrow enough to hold at most one of those least channels each
// (checked in the constructor, see isExact()), so one comparison finishes the
// byte. Fetch the table once per gradient or plane with table().
class QZEEncodedBytes
{
public:
    static const QZEEncodedBytes& table()
    {
        static const QZEEncodedBytes instance;
        return instance;
    }

    int byteOf(float c) const
    {
        c = c > 0.0f ? c : 0.0f;  // also NaN
        c = c < Top ? c : Top;    // Top and +inf encode to 255
        std::uint32_t bits;
        std::memcpy(&bits, &c, sizeof bits);
        const int k = _buckets[bits >> DroppedBits];
        return k + int(c >= _thresholds[k + 1]);
    }

    // The least channel that encodes to byte k (1 .. 255).
    float threshold(int k) const { return _thresholds[k]; }

    // Whether every bucket holds at most one threshold, which makes byteOf
    // exact wherever the thresholds are.
    bool isExact() const { return _exact; }

private:
    static constexpr float Top = 2.0f;
    static constexpr int DroppedBits = 23 - 7;
    // The bucket of Top is the last one.
    static constexpr std::uint32_t TopBits = 0x40000000u;
    static constexpr int BucketCount = int(TopBits >> DroppedBits) + 1;

    QZEEncodedBytes()
    {
        _thresholds[0] = -1.0f;
        for (int k = 1; k < 256; ++k)
            _thresholds[k] = leastChannelEncodingTo(k);
        _thresholds[256] = 2.0f * Top; // above every clamped channel: stops at 255
        int k = 0;
        for (int i = 0; i < BucketCount; ++i) {
            const float start = bucketStart(i);
            while (k < 255 && _thresholds[k + 1] <= start)
                ++k;
            _buckets[i] = quint8(k);
            const bool lastBucket = i + 1 == BucketCount;
            if (!lastBucket && k < 254 && _thresholds[k + 2] < bucketStart(i + 1))
                _exact = false;
        }
    }

    static float bucketStart(int i)
    {
        const std::uint32_t bits = std::uint32_t(i) << DroppedBits;
        float start;
        std::memcpy(&start, &bits, sizeof start);
        return start;
    }

    static int encodedByte(float c) { return QZEColor::toByte(QZEColor::encodeSRGB(c)); }

    // Bisection over 0 .. Top; the encoding never decreases.
    static float leastChannelEncodingTo(int k)
    {
        float low = 0.0f;
        float high = Top;
        while (true) {
            const float middle = low + (high - low) * 0.5f;
            if (middle == low || middle == high)
                return high;
            (encodedByte(middle) >= k ? high : low) = middle;
        }
    }

    float _thresholds[257];
    quint8 _buckets[BucketCount];
    bool _exact = true;
};

#endif // QZEENCODEDBYTES_H
