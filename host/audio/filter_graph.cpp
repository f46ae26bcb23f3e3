#include "host/audio/filter_graph.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "host/audio/audio_error.h"
#include "host/audio/ffmpeg.h"

namespace orvelhost {
namespace {

/// Filters see frames of this size only, the last one excepted: some of them act once per frame.
constexpr std::size_t kFrameSize = 1024;

/// `own` of a filter, or the longest of its branches.
std::int64_t Longest(const FilterSpec& spec, std::int64_t own,
                     std::int64_t (&ofChain)(const std::vector<FilterSpec>&)) {
  for (const std::vector<FilterSpec>& branch : spec.branches) {
    own = std::max(own, ofChain(branch));
  }
  return own;
}

/// Lets the audio of a branch lag like that of the longest one.
FilterSpec Lag(std::int64_t frames) {
  return {"adelay", {{"delays", std::to_string(frames) + "S"}, {"all", "1"}}};
}

}  // namespace

std::int64_t DelayOf(const std::vector<FilterSpec>& filters) {
  std::int64_t delay = 0;
  for (const FilterSpec& spec : filters) {
    delay += Longest(spec, spec.delay, DelayOf);
  }
  return delay;
}

std::int64_t TailOf(const std::vector<FilterSpec>& filters) {
  std::int64_t tail = 0;
  for (const FilterSpec& spec : filters) {
    tail += Longest(spec, spec.tail, TailOf);
  }
  return tail;
}

class FilterGraph::Graph {
 public:
  Graph(const AudioFormat& input, const std::vector<FilterSpec>& filters)
      : input_(input),
        pending_(input, kFrameSize),
        delay_(DelayOf(filters)),
        tail_(TailOf(filters)),
        late_(delay_) {
    ffmpeg::Silence();
    // Filters that split their work over threads would be free to differ from run to run.
    graph_->nb_threads = 1;
    source_ = Add({"abuffer",
                   {{"sample_rate", std::to_string(input.sampleRate)},
                    {"sample_fmt", "fltp"},
                    {"time_base", "1/" + std::to_string(input.sampleRate)},
                    {"channel_layout", DescribeLayout(input)}}});
    Output last = AppendChain({source_, 0}, filters);
    last = AppendFilter(
        last,
        {"aformat", {{"sample_fmts", "fltp"}, {"sample_rates", std::to_string(input.sampleRate)}}});
    sink_ = AppendFilter(last, {"abuffersink", {{"all_channel_counts", "1"}}}).filter;
    Check(avfilter_graph_config(graph_.get(), nullptr), "the whole chain");

    AVChannelLayout layout{};
    Check(av_buffersink_get_ch_layout(sink_, &layout), "abuffersink");
    output_ = {input.sampleRate, layout.nb_channels, ffmpeg::SpeakersOf(layout)};
    av_channel_layout_uninit(&layout);
    if (output_.channelCount == input.channelCount) {
      output_.speakers = input.speakers;  // what was unknown stays unknown
    }
  }

  const AudioFormat& OutputFormat() const { return output_; }

  void Push(const AudioBlock& block) {
    if (block.Format() != input_) {
      throw AudioError("cannot process: a block of another format was given");
    }
    for (std::size_t done = 0; done < block.FrameCount();) {
      const std::size_t count = std::min(kFrameSize - pendingCount_, block.FrameCount() - done);
      for (int channel = 0; channel < input_.channelCount; ++channel) {
        const std::span<const float> from = block.Channel(channel).subspan(done, count);
        std::ranges::copy(from, pending_.Channel(channel).subspan(pendingCount_).begin());
      }
      done += count;
      pendingCount_ += count;
      if (pendingCount_ == kFrameSize) {
        SendPending();
      }
    }
  }

  void Finish() {
    const std::int64_t total = position_ + static_cast<std::int64_t>(pendingCount_) + tail_;
    // Silence pushes out what the filters delay and lets the tail be heard.
    for (std::int64_t left = delay_ + tail_; left > 0;) {
      const std::int64_t count = std::min<std::int64_t>(left, kFrameSize);
      Push(AudioBlock(input_, static_cast<std::size_t>(count)));
      left -= count;
    }
    remaining_ = total - emitted_;
    if (pendingCount_ > 0) {
      SendPending();
    }
    Check(av_buffersrc_add_frame(source_, nullptr), "abuffer");
  }

  bool Pull(AudioBlock& block) {
    while (true) {
      const int status = av_buffersink_get_frame(sink_, frame_.get());
      if (status == ffmpeg::kTryAgain || status == ffmpeg::kEndOfStream) {
        return false;
      }
      Check(status, "the whole chain");
      const bool any = TakeFrame(block);
      av_frame_unref(frame_.get());
      if (any) {
        return true;
      }
    }
  }

 private:
  static void Check(int status, const std::string& filter) {
    if (status < 0) {
      ffmpeg::Check(status, "cannot process: the filter '" + filter + "' failed");
    }
  }

  /// Filters for two channels take none but left and right, whatever speakers these are for.
  static ffmpeg::ChannelLayout LayoutOf(const AudioFormat& format) {
    return ffmpeg::ChannelLayout(AudioFormat{format.sampleRate, format.channelCount,
                                             format.channelCount <= 2 ? 0 : format.speakers});
  }

  static std::string DescribeLayout(const AudioFormat& format) {
    const ffmpeg::ChannelLayout layout = LayoutOf(format);
    char text[256] = {};
    Check(av_channel_layout_describe(&layout.Get(), text, sizeof text), "abuffer");
    return text;
  }

  /// A place to which the next filter is linked.
  struct Output {
    AVFilterContext* filter;
    unsigned pad;
  };

  Output AppendFilter(Output last, const FilterSpec& spec) {
    AVFilterContext* next = Add(spec);
    Check(avfilter_link(last.filter, last.pad, next, 0), spec.filter);
    return {next, 0};
  }

  Output AppendChain(Output last, const std::vector<FilterSpec>& filters) {
    for (const FilterSpec& spec : filters) {
      last = spec.branches.empty() ? AppendFilter(last, spec) : AppendBranches(last, spec);
    }
    return last;
  }

  Output AppendBranches(Output last, const FilterSpec& spec) {
    const std::string count = std::to_string(spec.branches.size());
    AVFilterContext* split = AppendFilter(last, {"asplit", {{"outputs", count}}}).filter;
    AVFilterContext* sum = Add({"amix", {{"inputs", count}, {"normalize", "0"}}});
    const std::int64_t longest = DelayOf({spec});
    for (unsigned index = 0; index < spec.branches.size(); ++index) {
      Output end = AppendChain({split, index}, spec.branches[index]);
      if (const std::int64_t lag = longest - DelayOf(spec.branches[index]); lag > 0) {
        end = AppendFilter(end, Lag(lag));
      }
      Check(avfilter_link(end.filter, end.pad, sum, index), "amix");
    }
    return {sum, 0};
  }

  /// Stores what of the filters' frame belongs to the output; false when nothing does.
  bool TakeFrame(AudioBlock& block) {
    const std::int64_t frames = frame_->nb_samples;
    const std::int64_t begin = std::min(frames, late_);
    const std::int64_t count = std::min(frames - begin, remaining_);
    late_ -= begin;
    if (count <= 0) {
      return false;
    }
    remaining_ -= count;
    emitted_ += count;
    block = AudioBlock(output_, static_cast<std::size_t>(count));
    for (int channel = 0; channel < output_.channelCount; ++channel) {
      const std::span<float> to = block.Channel(channel);
      std::memcpy(to.data(), reinterpret_cast<float*>(frame_->extended_data[channel]) + begin,
                  to.size_bytes());
    }
    return true;
  }

  AVFilterContext* Add(const FilterSpec& spec) {
    const AVFilter* filter = avfilter_get_by_name(spec.filter.c_str());
    if (filter == nullptr) {
      throw AudioError("cannot process: the FFmpeg libraries of this machine lack the filter '" +
                       spec.filter + "'");
    }
    AVFilterContext* context = avfilter_graph_alloc_filter(graph_.get(), filter, nullptr);
    if (context == nullptr) {
      throw std::bad_alloc();
    }
    for (const auto& [name, value] : spec.options) {
      Check(av_opt_set(context, name.c_str(), value.c_str(), AV_OPT_SEARCH_CHILDREN),
            std::string(spec.filter).append(" ").append(name).append("=").append(value));
    }
    const int status = avfilter_init_dict(context, nullptr);
    if (status < 0 && spec.filter == "ladspa") {
      const std::string& library = spec.options.at("file");
      throw AudioError("cannot process: the LADSPA plugin '" + spec.options.at("plugin") +
                       "' of '" + library + "' is missing (Debian has it in the package " +
                       library + ")");
    }
    Check(status, spec.filter);
    return context;
  }

  void SendPending() {
    const ffmpeg::FramePtr frame(av_frame_alloc());
    frame->format = AV_SAMPLE_FMT_FLTP;
    frame->sample_rate = input_.sampleRate;
    frame->nb_samples = static_cast<int>(pendingCount_);
    frame->pts = position_;
    Check(av_channel_layout_copy(&frame->ch_layout, &LayoutOf(input_).Get()), "abuffer");
    Check(av_frame_get_buffer(frame.get(), 0), "abuffer");
    for (int channel = 0; channel < input_.channelCount; ++channel) {
      const std::span<const float> from = pending_.Channel(channel).first(pendingCount_);
      std::memcpy(frame->extended_data[channel], from.data(), from.size_bytes());
    }
    position_ += frame->nb_samples;
    pendingCount_ = 0;
    Check(av_buffersrc_add_frame(source_, frame.get()), "abuffer");
  }

  AudioFormat input_;
  AudioFormat output_;
  ffmpeg::GraphPtr graph_{avfilter_graph_alloc()};
  AVFilterContext* source_ = nullptr;
  AVFilterContext* sink_ = nullptr;
  ffmpeg::FramePtr frame_{av_frame_alloc()};
  AudioBlock pending_;
  std::size_t pendingCount_ = 0;
  std::int64_t position_ = 0;
  std::int64_t delay_;
  std::int64_t tail_;
  std::int64_t late_;  // frames of the output that still have to be left out
  std::int64_t remaining_ = std::numeric_limits<std::int64_t>::max();
  std::int64_t emitted_ = 0;
};

FilterGraph::FilterGraph(const AudioFormat& input, const std::vector<FilterSpec>& filters)
    : graph_(std::make_unique<Graph>(input, filters)) {}
FilterGraph::~FilterGraph() = default;
FilterGraph::FilterGraph(FilterGraph&&) noexcept = default;
FilterGraph& FilterGraph::operator=(FilterGraph&&) noexcept = default;

const AudioFormat& FilterGraph::OutputFormat() const { return graph_->OutputFormat(); }
void FilterGraph::Push(const AudioBlock& block) { graph_->Push(block); }
void FilterGraph::Finish() { graph_->Finish(); }
bool FilterGraph::Pull(AudioBlock& block) { return graph_->Pull(block); }

}  // namespace orvelhost
