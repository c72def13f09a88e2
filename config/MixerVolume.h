#pragma once

namespace td {

// Sets one control of the machine's mixer; true if it was set. selector: 0 master volume, 1 master mute,
// 2 bass, 3 treble, 4 master on/off, 5 wave volume, 6 wave mute, 7 synthesizer volume, 8 synthesizer mute,
// 9 CD volume, 10 CD mute, 11 microphone volume, 12 microphone mute, 13 line-in volume, 14 line-in mute,
// 15 recording volume. volume: percent 0..100, a negative value becomes 1; for a mute or on/off
// selector any value but 0 means "on". balance: -100 (left only) .. 100 (right only).
// Where the card lacks the line or the control, volume and balance become 0 and the result is false,
// without a message. A selector outside 0..15 throws AppError "Type mismatch", as the console always has.
bool MixerVolume(int selector, int& volume, int& balance);

// The result of the last mixer step: 0, or the negative error code of the step that failed.
int MixerLastResult();

}  // namespace td
