#pragma once

namespace quellton {

// What the Mix timer needs from the analyser's published record, copied under its lock.
struct AudioSignal {
    double lastSignal = 0;  // wall-clock time of the last non-silent analysis
    float beat = 0;
};

class AudioRecordSource {
public:
    virtual ~AudioRecordSource() = default;
    virtual AudioSignal read() = 0;
};

}  // namespace quellton
