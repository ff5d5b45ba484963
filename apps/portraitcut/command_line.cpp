#include "command_line.h"

#include <vizl_api.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <map>

#include "batch.h"
#include "folder_walk.h"
#include "portrait_size.h"

namespace {

// What is worked out once all arguments are known.
struct RawText {
  std::string size;
  std::string preset;
  std::string face = "largest";
  std::vector<double> shift;
  std::string fill = "ffffff";
  std::string framing;
  std::string padding;
  double dotsPerInch = 0;
};

const std::map<std::string, Performance> kPerformances = {
    {"fast", Performance::kFast}, {"balanced", Performance::kBalanced}, {"thorough", Performance::kThorough}};
const std::map<std::string, Padding> kPaddings = {{"shrink", Padding::kShrink},
                                                  {"fill", Padding::kFill},
                                                  {"edge", Padding::kEdge},
                                                  {"mirror", Padding::kMirror},
                                                  {"refuse", Padding::kRefuse}};
const std::map<std::string, Format> kFormats = {
    {"auto", Format::kAuto}, {"jpg", Format::kJpeg}, {"png", Format::kPng}, {"bmp", Format::kBmp}};
const std::map<std::string, Framing> kFramings = {
    {"face", Framing::kFace}, {"eyes", Framing::kEyes}, {"head", Framing::kHead}};

const std::map<std::string, Standard> kStandards = {{"icao", Standard::kIcao}, {"us", Standard::kUs}};

constexpr const char* kFooter = R"(Examples:
  portraitcut cut photo.jpg -o portrait.jpg
  portraitcut cut photos/ -r -o portraits/ --size 300x400
  portraitcut cut --preset icao photo.jpg -o passport.jpg
  portraitcut detect photos/*.jpg > faces.jsonl
  portraitcut cut - -o - < photo.jpg > portrait.jpg

"portraitcut COMMAND --help" tells the options of a command; "man portraitcut" tells all.)";

// As help shows them; the completions for shells read them there.
template <typename Value>
std::string namesOf(const std::map<std::string, Value>& choices) {
  std::string names;
  for (const auto& choice : choices) names += (names.empty() ? "" : "|") + choice.first;
  return names;
}

template <typename Value>
void addChoice(CLI::App* app, const std::string& names, Value& target, const std::map<std::string, Value>& choices,
               const std::string& text) {
  app->add_option_function<std::string>(
         names, [&target, &choices](const std::string& name) { target = choices.at(name); }, text)
      ->check(CLI::IsMember(&choices).description(""))
      ->type_name(namesOf(choices));
}

// Like CLI::Range, which takes "nan" for a number of any range.
CLI::Validator realIn(double lowest, double highest) {
  const CLI::Range range(lowest, highest);
  const auto check = [range](std::string& text) {
    double value = 0;
    return CLI::detail::lexical_cast(text, value) && std::isnan(value) ? text + " is no number" : range(text);
  };
  return CLI::Validator(check, range.get_description());
}

void addInputOptions(CLI::App* app, InputOptions& input) {
  app->add_option("input", input.paths, "Pictures (JPEG, PNG, BMP) and folders of pictures; - is standard input")
      ->type_name("INPUT");
  app->add_flag("-r,--recursive", input.recursive, "Go into sub-folders");
  app->add_option("--files-from", input.listFile, "Take the inputs from the lines of FILE; - is standard input")
      ->type_name("FILE");
  app->add_flag("-0,--null", input.nullSeparated, "The names in that file end in a zero byte, not in a line break");
  app->add_option("--base", input.base, "Mirror the names of inputs below FOLDER in the output folder")
      ->type_name("FOLDER");
  app->add_flag("--stream", input.pictureStream,
                "Take pictures from JSON lines on standard input: {\"id\": ..., \"image_base64\": \"...\"}");
  app->add_flag("--ignore-orientation", input.ignoreOrientation, "Take pictures as stored, whatever their EXIF says");
}

void addDetectionOptions(CLI::App* app, DetectionOptions& detection) {
  addChoice(app, "-p,--performance", detection.performance, kPerformances,
            "How thoroughly to look for faces, thorough unless told otherwise");
  app->add_option("--threshold", detection.threshold, "Like hits that make a face; more gives fewer false faces")
      ->capture_default_str()
      ->check(CLI::Range(1, 1000000))
      ->type_name("N");
  app->add_option("--working-width", detection.workingWidth,
                  "Width to which pictures are reduced for the search; more finds smaller faces")
      ->check(CLI::Range(20, 65535))
      ->type_name("PIXELS");
  app->add_option("--min-face", detection.minimumFace, "Pass over faces that are narrower")
      ->check(CLI::Range(0, 65535))
      ->type_name("PIXELS");
}

void addBatchOptions(CLI::App* app, BatchOptions& batch, OutputOptions& output) {
  app->add_option("-j,--jobs", batch.jobs, "Worker processes; one for each processor unless told otherwise")
      ->check(CLI::Range(1, 1024))
      ->type_name("N");
  app->add_option("--file-timeout", batch.fileTimeout,
                  "Give up a file that takes longer, by ending its worker; no limit unless told")
      ->check(realIn(0.1, 1e6))
      ->type_name("SECONDS");
  app->add_option("--log", batch.log, "Write a line of JSON for each file as it is done")->type_name("FILE");
  app->add_flag("--resume", batch.resume, "Go on with the log: pass over what it tells as done");
  app->add_flag("-f,--force", output.force, "Replace outputs and a log that exist (never an input)");
  app->add_flag("--quiet", batch.quiet, "No progress and no summary, only failures");
}

void addReportOptions(CLI::App* app, Options& options) {
  app->add_flag_callback(
      "--json", [&options] { options.report = Report::kJson; }, "A line of JSON for each file");
  app->add_flag_callback(
      "--csv", [&options] { options.report = Report::kCsv; }, "Comma-separated values");
  app->add_flag("--stored-coordinates", options.storedCoordinates,
                "Tell positions in the picture as stored, not as turned upright");
}

void addOutputOptions(CLI::App* app, OutputOptions& output) {
  app->add_option("-o,--output", output.path, "File or folder to write to; - is standard output")->type_name("PATH");
  addChoice(app, "--format", output.format, kFormats, "Kind of the output; auto goes by its name or the input's");
  app->add_option("-q,--quality", output.quality, "Quality of JPEG files, 0 to 100")
      ->capture_default_str()
      ->check(CLI::Range(0, 100));
}

void addFrameOptions(CLI::App* app, CutOptions& cut, RawText& raw) {
  app->add_option("-s,--size", raw.size, "Size of the portrait: 300x400 (pixels), 35x45mm, 2x2in; 600x800 otherwise")
      ->type_name("WxH");
  app->add_option("--preset", raw.preset, "35x45 mm passport, 2x2 inch passport or 512x512")
      ->type_name("icao|us|avatar");
  app->add_option("--dpi", raw.dotsPerInch, "Dots per inch of sizes in mm and inches, 300 unless told otherwise")
      ->check(realIn(1, 10000));
  app->add_option("--framing", raw.framing, "Frame by the face, the eyes (the rule at thorough) or the head")
      ->check(CLI::IsMember(&kFramings).description(""))
      ->type_name(namesOf(kFramings));
  app->add_option("--face-scale", cut.faceScale, "Zoom: 2 shows half as much around the face, 0.6 the shoulders")
      ->capture_default_str()
      ->check(CLI::Range(0.01, 100.0));
  app->add_option("--shift", raw.shift, "Move the frame right and down, in its own widths and heights")
      ->expected(2)
      ->type_name("X Y");
  app->add_option("--face", raw.face, "Which faces to cut; 1 is the largest")
      ->capture_default_str()
      ->type_name("largest|all|N");
  app->add_option("--pad", raw.padding,
                  "Where the frame leaves the picture: shrink it, fill with a colour, repeat the edge, mirror, refuse")
      ->check(CLI::IsMember(&kPaddings).description(""))
      ->type_name(namesOf(kPaddings));
  app->add_option("--fill-colour", raw.fill, "Colour of --pad fill and behind transparent pixels, RRGGBB")
      ->capture_default_str();
}

void applyPreset(const RawText& raw, Options& options) {
  CutOptions& cut = options.cut;
  cut.framing = options.detection.performance == Performance::kThorough ? Framing::kEyes : Framing::kFace;
  if (raw.preset.empty()) return;
  const Preset* preset = findPreset(raw.preset);
  if (preset == nullptr) throw CLI::ValidationError("--preset", raw.preset + " is not one of icao, us, avatar");
  if (preset->framing == Framing::kHead) cut.framing = preset->framing;
  cut.head = preset->head;
  cut.padding = preset->padding;
  const double dotsPerInch = raw.dotsPerInch > 0 ? raw.dotsPerInch : preset->dotsPerInch;
  cut.size = parseSize(preset->size, dotsPerInch).value_or(cut.size);
  cut.dotsPerInch = preset->dotsPerInch > 0 ? dotsPerInch : raw.dotsPerInch;
}

void applySize(const RawText& raw, CutOptions& cut) {
  if (raw.dotsPerInch > 0) cut.dotsPerInch = raw.dotsPerInch;
  if (raw.size.empty()) return;
  const bool onPaper = raw.size.ends_with("mm") || raw.size.ends_with("in");
  if (onPaper && cut.dotsPerInch == 0) cut.dotsPerInch = 300;
  const std::optional<Size> size = parseSize(raw.size, cut.dotsPerInch);
  if (!size) throw CLI::ValidationError("--size", raw.size + " is no size: 300x400, 35x45mm or 2x2in, to 20000 pixels");
  cut.size = *size;
}

int parseFace(const std::string& text) {
  if (text == "largest") return 1;
  if (text == "all") return 0;
  const bool isNumber = !text.empty() && text.size() < 5 && text.find_first_not_of("0123456789") == std::string::npos;
  const int number = isNumber ? std::stoi(text) : 0;
  if (number < 1) throw CLI::ValidationError("--face", text + " is neither largest, all nor a number");
  return number;
}

void applyFrame(const RawText& raw, Options& options) {
  CutOptions& cut = options.cut;
  applyPreset(raw, options);
  applySize(raw, cut);
  if (!raw.framing.empty()) cut.framing = kFramings.at(raw.framing);
  if (cut.framing == Framing::kHead && cut.head.headHeight == 0) cut.head = findPreset("icao")->head;
  if (!raw.padding.empty()) cut.padding = kPaddings.at(raw.padding);
  if (!raw.shift.empty()) {
    cut.shiftX = raw.shift[0];
    cut.shiftY = raw.shift[1];
  }
  if (!std::isfinite(cut.faceScale + cut.shiftX + cut.shiftY)) {
    throw CLI::ValidationError("--face-scale, --shift", "take finite numbers");
  }
  const std::optional<Colour> fill = parseColour(raw.fill);
  if (!fill) throw CLI::ValidationError("--fill-colour", raw.fill + " is not six hexadecimal digits");
  cut.fill = *fill;
  cut.face = parseFace(raw.face);
}

void require(bool sensible, const char* name, const char* text) {
  if (!sensible) throw CLI::ValidationError(name, text);
}

void requireInputs(const Options& options) {
  const InputOptions& input = options.input;
  const int ways = !input.paths.empty() + !input.listFile.empty() + input.pictureStream;
  require(ways == 1, "INPUT", "give inputs, --files-from or --stream, one of them");
  require(!options.batch.resume || !options.batch.log.empty(), "--resume", "needs --log");
  require(!options.batch.resume || !input.pictureStream, "--resume", "can't be used with --stream");
}

void requireOutput(const Options& options) {
  const std::string& path = options.output.path;
  if (options.input.pictureStream) {
    require(options.command == Command::kCut, "--stream", "can't be used with annotate");
    require(path.empty(), "--output", "can't be used with --stream: the portraits go to standard output");
    require(options.report == Report::kJson, "--csv", "can't be used with --stream");
    return;
  }
  require(!path.empty(), "--output", "tell where the portraits go");
  if (path != "-") return;
  require(options.input.paths.size() == 1 && !isFolder(options.input.paths[0]), "--output",
          "standard output takes one picture");
  require(options.report == Report::kNone, "--output", "standard output can't take a report and a picture");
  require(options.cut.face != 0, "--output", "standard output takes one face");
}

class Parser {
 public:
  Parser() : app_("Finds faces in pictures and cuts portraits out.", "portraitcut") {
    app_.set_version_flag("--version", std::string("portraitcut ") + VIZL_GetVersion());
    app_.require_subcommand(1);
    app_.footer(kFooter);
    addCut();
    addSearch("detect", Command::kDetect, "Tell where faces are");
    addSearch("features", Command::kFeatures, "Tell the forty points of each face");
    addSearch("eyes", Command::kEyes, "Tell the eyes of each face");
    addAnnotate();
    addCheck();
  }

  std::variant<Options, int> parse(int argc, char** argv) {
    try {
      app_.parse(argc, argv);
      const bool writes = options_.command == Command::kCut || options_.command == Command::kAnnotate;
      if (writes) applyFrame(raw_, options_);
      const bool isFilter = options_.input.pictureStream || options_.input.listFile == "-";
      if (isFilter && options_.report == Report::kNone) options_.report = Report::kJson;
      if (options_.input.pictureStream && options_.report == Report::kText) options_.report = Report::kJson;
      requireInputs(options_);
      if (writes) requireOutput(options_);
    } catch (const CLI::ParseError& error) {
      return app_.exit(error, std::cout, std::cerr) == 0 ? kAllDone : kWrongUse;
    }
    return options_;
  }

 private:
  CLI::App* addCommand(const std::string& name, Command command, const std::string& text) {
    CLI::App* sub = app_.add_subcommand(name, text);
    addInputOptions(sub, options_.input);
    addDetectionOptions(sub, options_.detection);
    addBatchOptions(sub, options_.batch, options_.output);
    addReportOptions(sub, options_);
    sub->parse_complete_callback([this, command] { options_.command = command; });
    return sub;
  }

  void addCut() {
    CLI::App* sub = addCommand("cut", Command::kCut, "Cut portraits out of pictures");
    addOutputOptions(sub, options_.output);
    addFrameOptions(sub, options_.cut, raw_);
  }

  void addAnnotate() {
    CLI::App* sub = addCommand("annotate", Command::kAnnotate, "Draw faces, points and the portrait's frame");
    addOutputOptions(sub, options_.output);
    addFrameOptions(sub, options_.cut, raw_);
  }

  void addCheck() {
    CLI::App* sub = addCommand("check", Command::kCheck, "Measure portraits against the rules of passports");
    sub->preparse_callback([this](size_t) { options_.report = Report::kText; });
    addChoice(sub, "--standard", options_.standard, kStandards, "The rules, icao unless told otherwise");
  }

  void addSearch(const std::string& name, Command command, const std::string& text) {
    CLI::App* sub = addCommand(name, command, text);
    sub->preparse_callback([this](size_t) { options_.report = Report::kJson; });
  }

  CLI::App app_;
  Options options_;
  RawText raw_;
};

}  // namespace

std::variant<Options, int> parseCommandLine(int argc, char** argv) { return Parser().parse(argc, argv); }
