#include "host/factory/looks.h"

namespace orvelhost {
namespace {

// A look that sets the volume matches the loudness first, so that it does whatever the recording's
// level is. Sound loses 6 dB with every doubling of the distance, so close, medium and distant
// stand 6 dB apart.
constexpr float kClose = 3.0f;
constexpr float kMedium = -3.0f;
constexpr float kDistant = -9.0f;

// clang-format off
constexpr Look kLooks[] = {
  { .mode = "ambience", .word = "Default", .title = "(Default)", .guid = "14797bd9-10e6-4320-832f-a78acd14d539" },
  { .mode = "ambience", .word = "Focused", .title = "Focused", .guid = "cbbd9bfc-3447-435b-960f-f7b9da03924b",
    .autoLoudness = true, .width = 1.5f },
  { .mode = "ambience", .word = "FromOutside", .title = "From Outside", .guid = "09787468-0e76-4f85-b355-c3a4aec4c98f",
    .autoLoudness = true, .reverb = {{ "OutsideAmbience", 4.0f }}, .width = 2.0f, .volume = -6.0f },
  { .mode = "ambience", .word = "RoomTone", .title = "Room Tone", .guid = "93d030fc-c03c-4c89-b12c-6b9fb385b8f0",
    .autoLoudness = true, .reverb = {{ "RoomAmbience", 2.5f }}, .volume = -12.0f },
  { .mode = "ambience", .word = "WideAndDeep", .title = "Wide and Deep", .guid = "0a5972e8-841f-4134-9c14-2886c3a635f5",
    .autoLoudness = true, .reverb = {{ "LargeRoomAmbience", 4.0f }}, .width = 6.0f },

  { .mode = "dialog", .word = "Default", .title = "(Default)", .guid = "29005963-8f41-4937-a812-05e11b425da1" },
  { .mode = "dialog", .word = "BackgroundWallaWalla", .title = "Background Walla Walla", .guid = "0f1c000e-5cc8-4913-88be-d7c21632fcbe",
    .autoLoudness = true, .dynamics = 6.0f, .equalizer = {{ "BackgroundVoice", 10.0f }}, .reverb = {{ "WarmRoom", 4.0f }}, .volume = -12.0f },
  { .mode = "dialog", .word = "BalancedFemaleVoice", .title = "Balanced Female Voice", .guid = "7bd8d425-764a-4d1b-8a93-8524ef608114",
    .autoLoudness = true, .sibilance = 3.0f, .rumble = 5.0f, .dynamics = 4.0f, .equalizer = {{ "SubtleBoostFemale", 5.0f }}, .voice = Voice::kHigh },
  { .mode = "dialog", .word = "BalancedMaleVoice", .title = "Balanced Male Voice", .guid = "2615359c-bfbd-46a9-9a1a-6b6e39b75822",
    .autoLoudness = true, .sibilance = 2.0f, .rumble = 4.0f, .dynamics = 4.0f, .equalizer = {{ "SubtleBoostMale", 5.0f }}, .voice = Voice::kLow },
  { .mode = "dialog", .word = "CleanUpNoisyDialogue", .title = "Clean Up Noisy Dialogue", .guid = "2e65df7d-0d71-4bb0-9e95-ee8d926276e2",
    .autoLoudness = true, .noise = 6.0f, .hum = 7.0f, .sibilance = 3.0f, .rumble = 7.0f, .equalizer = {{ "VocalPresence", 4.0f }} },
  { .mode = "dialog", .word = "FromOutsideABuilding", .title = "From Outside a Building", .guid = "15f2e71f-0569-44ed-9985-4cf705adf1ea",
    .autoLoudness = true, .equalizer = {{ "OutsideOfTheRoom", 8.0f }}, .reverb = {{ "OutsideTheClub", 3.0f }}, .volume = -6.0f },
  { .mode = "dialog", .word = "FromTheRadio", .title = "From the Radio", .guid = "2a4413bf-9bfc-43f1-95fd-fd10a17ed8fa",
    .autoLoudness = true, .dynamics = 8.0f, .equalizer = {{ "OldRadio", 10.0f }}, .volume = -3.0f },
  { .mode = "dialog", .word = "FromTheTelephone", .title = "From the Telephone", .guid = "aca05f65-616b-4405-99ea-ee66ae526398",
    .autoLoudness = true, .dynamics = 6.0f, .equalizer = {{ "OnTheTelephone", 10.0f }}, .volume = -3.0f },
  { .mode = "dialog", .word = "FromTheTelevision", .title = "From the Television", .guid = "d5059e8d-b33c-4d3a-9d5c-3c0aac2d1bd8",
    .autoLoudness = true, .dynamics = 6.0f, .equalizer = {{ "OldRadio", 5.0f }}, .reverb = {{ "SmallDryRoom", 2.5f }}, .volume = -3.0f },
  { .mode = "dialog", .word = "InALargeRoom", .title = "In a Large Room", .guid = "eaa436ee-4d7a-4f8d-a948-806d15ba3863",
    .reverb = {{ "LargeReflectiveRoom", 4.5f }} },
  { .mode = "dialog", .word = "InASmallRoom", .title = "In a Small Room", .guid = "872c6ba6-6e30-4b01-8b27-c71c8881df6f",
    .reverb = {{ "SmallDryRoom", 3.5f }} },
  { .mode = "dialog", .word = "MakeCloseUp", .title = "Make Close Up", .guid = "cc62b5d3-4d11-42e4-8794-02788486c8b4",
    .autoLoudness = true, .rumble = 3.0f, .dynamics = 5.0f, .equalizer = {{ "ThatPublicRadioSound", 5.0f }}, .volume = kClose },
  { .mode = "dialog", .word = "MakeDistant", .title = "Make Distant", .guid = "73bb8495-38f5-43d9-b30c-8c9cf3a3b7fe",
    .autoLoudness = true, .equalizer = {{ "OutsideOfTheRoom", 2.5f }}, .reverb = {{ "LargeReflectiveRoom", 5.0f }}, .volume = kDistant },
  { .mode = "dialog", .word = "MakeMediumShot", .title = "Make Medium Shot", .guid = "a1071c23-8a7b-4166-9a20-8118891ea1ff",
    .autoLoudness = true, .equalizer = {{ "BackgroundVoice", 10.0f }}, .reverb = {{ "WarmRoom", 2.5f }}, .volume = kMedium },
  { .mode = "dialog", .word = "OverTheIntercom", .title = "Over the Intercom", .guid = "cba19bae-3666-4765-92a9-9d1d29ab9026",
    .autoLoudness = true, .dynamics = 8.0f, .equalizer = {{ "Intercom", 10.0f }}, .reverb = {{ "SmallDryRoom", 1.5f }}, .volume = -3.0f },
  { .mode = "dialog", .word = "PodcastVoice", .title = "Podcast Voice", .guid = "9bac4e52-be92-49d6-9728-7ed10921f9f7",
    .autoLoudness = true, .noise = 3.0f, .sibilance = 4.0f, .rumble = 5.0f, .dynamics = 6.0f, .equalizer = {{ "PodcastVoice", 6.0f }}, .volume = 5.0f },

  { .mode = "music", .word = "Default", .title = "(Default)", .guid = "83579953-5c56-4107-a31a-b5920f46d141" },
  { .mode = "music", .word = "BalancedBackgroundMusic", .title = "Balanced Background Music", .guid = "861caf0b-dab4-47c3-bad8-9ffacea499a6",
    .autoLoudness = true, .volume = -12.0f },
  { .mode = "music", .word = "RemixTo30Seconds", .title = "Remix to 30 Seconds", .guid = "7ad17358-1c0d-4817-ac03-46e2c74850a4",
    .remixSeconds = 30.0f },
  { .mode = "music", .word = "RemixTo60Seconds", .title = "Remix to 60 Seconds", .guid = "5bcbecdb-cc36-4f71-b572-7aba7a91ea30",
    .remixSeconds = 60.0f },
  { .mode = "music", .word = "RemixTo90Seconds", .title = "Remix to 90 Seconds", .guid = "d3dd6680-bbb3-4a11-9eb6-d84f617cb135",
    .remixSeconds = 90.0f },

  { .mode = "sfx", .word = "Default", .title = "(Default)", .guid = "cedf478e-4995-4013-8375-c462237ae1d2" },
  { .mode = "sfx", .word = "Explosion", .title = "Explosion", .guid = "163263bd-ca09-4f0d-aa65-9b0f5db423a2",
    .autoLoudness = true, .reverb = {{ "HeavyReverb", 3.0f }}, .volume = 6.0f },
  { .mode = "sfx", .word = "FromOutside", .title = "From Outside", .guid = "6ea17857-7632-4284-9925-10a8f605c471",
    .autoLoudness = true, .reverb = {{ "OutsideReverb", 4.0f }}, .volume = -6.0f },
  { .mode = "sfx", .word = "FromTheLeft", .title = "From the Left", .guid = "ae45c4ac-6732-477c-9c79-e29cc52f0e97",
    .pan = -5.0f },
  { .mode = "sfx", .word = "FromTheRight", .title = "From the Right", .guid = "6d275af6-4e53-49ed-a178-b676afca9a5a",
    .pan = 5.0f },
  { .mode = "sfx", .word = "InALargeRoom", .title = "In a Large Room", .guid = "f43f4bc3-b69f-4e56-bb9c-82bc982587b9",
    .reverb = {{ "HeavyReverb", 4.5f }} },
  { .mode = "sfx", .word = "MakeCloseUp", .title = "Make Close Up", .guid = "600424b8-504a-4400-b47d-3fd5084e0946",
    .autoLoudness = true, .reverb = {{ "LightReverb", 1.0f }}, .volume = kClose },
  { .mode = "sfx", .word = "MakeDistant", .title = "Make Distant", .guid = "372ddb42-8fef-4c6b-87a2-a902e74e030a",
    .autoLoudness = true, .reverb = {{ "OutsideReverb", 5.0f }}, .volume = kDistant },
  { .mode = "sfx", .word = "MakeMediumShot", .title = "Make Medium Shot", .guid = "0084cb5b-6097-4de3-bbc5-138e7ee8b39d",
    .autoLoudness = true, .reverb = {{ "RoomReverb", 2.5f }}, .volume = kMedium },
};
// clang-format on

}  // namespace

std::span<const Look> Looks() { return kLooks; }

}  // namespace orvelhost
