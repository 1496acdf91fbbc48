// Scrolling the store list of the graphical client: 1,000 stores with thumbnails, each a
// distinct 750x500 JPEG from a loopback server, in the client's own list (RowList, the
// store row factory, PictureView thumbnails through an ImageLoader set up as the client
// sets it up) in a 360x720 window. The list is scrolled from top to bottom and back by a
// fixed distance each frame (about two rows), and the program prints the renderer, the
// work time of each frame (frame clock "before-paint" to the end of "after-paint"), also as
// CPU time of the interface thread (a busy machine stretches wall time) and split into the
// update, layout and paint phases; the frames that came later than twice the refresh
// interval; the rows bound and pictures arrived in the frames over budget against the
// others; and the growth of resident memory (peak) over the scroll.
//
// usage: xvfb-run -a -s "-screen 0 1024x768x24" build/release/bench/gtk_scroll_bench
// Exits 1 when the list was never drawn or its pictures never arrived.
#include <adwaita.h>
#include <gtkmm.h>
#include <gtkmm/init.h>
#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "apps/gtk/gtk_application.h"
#include "apps/gtk/nearby_page.h"
#include "apps/gtk/picture_view.h"
#include "apps/gtk/renderer_choice.h"
#include "apps/gtk/row_list.h"
#include "apps/gtk/store_rows.h"
#include "core/images/image_loader.h"
#include "core/session/global_data.h"
#include "platform/env.h"
#include "platform/file_locations.h"
#include "platform/codecs/image_codecs.h"
#include "platform/linux/codec_image_decoder.h"
#include "platform/linux/curl_transport.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/linux/thread_work_queue.h"
#include "platform/testing/loopback_server.h"
#include "platform/testing/test_env.h"

namespace qmv::gtk {
namespace {

constexpr int kStores = 1000;
constexpr int kVariants = 8;  // distinct pictures; every store still has its own URL
constexpr int kWidth = 360;
constexpr int kHeight = 720;
constexpr double kRowsPerFrame = 2;
// As the client's front end keeps them.
constexpr std::size_t kPictureMemoryBytes = std::size_t{32} << 20;
constexpr double kFrameTargetMs = 16.7;
constexpr double kMemoryTargetMb = 30;

using SteadyClock = std::chrono::steady_clock;

double msSince(SteadyClock::time_point from, SteadyClock::time_point to) {
  return std::chrono::duration<double, std::milli>(to - from).count();
}

// A 750x500 picture that compresses like a photo: gradients, a checker whose phase and
// colours follow `variant`, and noise.
std::string photoJpeg(int variant) {
  DecodedImage image{750, 500, 750 * 4, {}};
  image.pixels.resize(image.stride * image.height);
  std::uint32_t noise = 12345 + variant * 7919;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      noise = noise * 1103515245u + 12345u;
      const int grain = static_cast<int>((noise >> 16) & 31) - 16;
      char* p = &image.pixels[y * image.stride + x * 4];
      p[0] = static_cast<char>(std::clamp((x + variant * 90) % 750 * 255 / 750 + grain, 0, 255));
      p[1] = static_cast<char>(std::clamp(y * 255 / 500 + grain, 0, 255));
      p[2] = static_cast<char>(std::clamp(((x / (20 + variant) + y / 25) % 2) * 120 + 60 + grain, 0, 255));
      p[3] = static_cast<char>(0xff);
    }
  }
  auto jpeg = encodeJpeg(image, 82);
  if (!jpeg.ok()) {
    std::cerr << "gtk_scroll_bench: cannot encode the pictures: " << jpeg.status().message() << '\n';
    std::exit(1);
  }
  return *std::move(jpeg);
}

// VmRSS or VmHWM in kB.
long statusKb(const std::string& field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind(field + ":", 0) == 0) return std::strtol(line.c_str() + field.size() + 1, nullptr, 10);
  }
  return -1;
}

// Lets VmHWM count from now on.
bool resetPeakRss() {
  std::ofstream clear("/proc/self/clear_refs");
  clear << "5";
  clear.flush();
  return static_cast<bool>(clear);
}

std::string loadAverage() {
  std::ifstream load("/proc/loadavg");
  std::string line;
  std::getline(load, line);
  return line;
}

double percentile(std::vector<double> values, double p) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const double rank = p / 100.0 * (values.size() - 1);
  const auto below = static_cast<std::size_t>(std::floor(rank));
  const std::size_t above = std::min(below + 1, values.size() - 1);
  return values[below] + (values[above] - values[below]) * (rank - below);
}

void collectThumbnails(GtkWidget* widget, std::vector<PictureView*>& out) {
  for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    if (g_strcmp0(gtk_widget_get_name(child), "thumbnail") == 0) {
      if (auto* view = dynamic_cast<PictureView*>(Glib::wrap(child))) out.push_back(view);
      continue;
    }
    collectThumbnails(child, out);
  }
}

// The thumbnails of rows that lie at least partly inside the scroller's view.
std::vector<PictureView*> visibleThumbnails(Gtk::ScrolledWindow& scroller) {
  std::vector<PictureView*> all;
  collectThumbnails(GTK_WIDGET(scroller.gobj()), all);
  std::vector<PictureView*> visible;
  const double height = scroller.get_height();
  for (PictureView* view : all) {
    if (!view->get_mapped() || view->url().empty()) continue;
    graphene_point_t origin{0, 0};
    graphene_point_t at;
    if (!gtk_widget_compute_point(GTK_WIDGET(view->gobj()), GTK_WIDGET(scroller.gobj()), &origin, &at)) continue;
    if (at.y + view->get_height() > 0 && at.y < height) visible.push_back(view);
  }
  return visible;
}

// Iterates the default context until `done` or `seconds` have passed.
bool runUntil(const std::function<bool()>& done, double seconds) {
  const auto until = SteadyClock::now() + std::chrono::duration<double>(seconds);
  while (!done()) {
    if (SteadyClock::now() > until) return false;
    g_main_context_iteration(nullptr, FALSE);
    if (!done()) g_usleep(1000);
  }
  return true;
}

// CPU time of the calling thread, which a busy machine does not stretch as it does wall time.
double threadCpuMs() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return now.tv_sec * 1e3 + now.tv_nsec / 1e6;
}

struct FrameStats {
  SteadyClock::time_point start;
  double startCpu = 0;
  // When each phase's handlers (GTK's, then ours) had all run.
  SteadyClock::time_point updated;
  SteadyClock::time_point laidOut;
  SteadyClock::time_point painted;
  std::vector<double> work, cpu, updateMs, layoutMs, paintMs, intervals;
  std::int64_t refreshUs = 0;
  bool recording = false;
  bool inFrame = false;
  std::set<std::string> shownPictures;  // URLs whose thumbnails a row showed
  // Rows bound and pictures that arrived since the last frame, and per frame.
  int binds = 0;
  int arrivals = 0;
  std::vector<int> frameBinds, frameArrivals;
};

int run() {
  std::cout << "load average at start: " << loadAverage() << '\n';
  chooseRenderer();
  if (!gtk_init_check()) {
    std::cerr << "gtk_scroll_bench: no display (run it under xvfb-run)\n";
    return 2;
  }
  adw_init();
  Gtk::init_gtkmm_internals();
  loadStyle();

  // The pictures: a few JPEGs, each store under its own URL.
  std::vector<std::string> jpegs;
  for (int i = 0; i < kVariants; ++i) jpegs.push_back(photoJpeg(i));
  std::atomic<int> served{0};
  testsupport::LoopbackServer server;
  server.server().Get(R"(/pictures/store_(\d+)\.jpg)", [&](const httplib::Request& request, httplib::Response& response) {
    const int n = std::atoi(request.matches[1].str().c_str());
    response.set_header("Cache-Control", "max-age=86400");
    response.set_content(jpegs[n % kVariants], "image/jpeg");
    ++served;
  });
  server.start();

  // The loader as the client's front end builds it, with an empty disk cache of its own.
  char dirTemplate[] = "/tmp/qmv-scroll-bench-XXXXXX";
  if (mkdtemp(dirTemplate) == nullptr) {
    std::cerr << "gtk_scroll_bench: cannot make a cache directory\n";
    return 1;
  }
  const std::filesystem::path cacheDir = dirTemplate;
  Env env;
  auto loop = std::make_shared<GLibMainLoop>();
  env.mainLoop = loop;
  env.http = std::make_shared<CurlTransport>(loop);
  env.files = std::make_shared<HomeFileLocations>(cacheDir);
  env.imageDecoder = std::make_shared<CodecImageDecoder>();
  completeForTesting(env);  // the rest (settings, alerts, ...) are not used here
  auto installed = std::make_unique<ScopedEnv>(env);
  ImageLoaderOptions pictureOptions;
  pictureOptions.memoryBytes = kPictureMemoryBytes;
  auto pictures = std::make_unique<ImageLoader>(env, std::make_shared<ThreadWorkQueue>(2), pictureOptions);

  // 1,000 stores around the member, as the nearby list draws them.
  GlobalData::sharedInstance().setUserLocation(Coordinate{35.0606, 118.3425});
  std::vector<NearbyRow> stores;
  for (int i = 0; i < kStores; ++i) {
    StoreInfoModel store;
    store.storeId = std::to_string(1000 + i);
    store.storeName = "店铺 " + std::to_string(i + 1);
    store.title = "招牌菜 " + std::to_string(i % 37) + " 折，到店即享";
    store.price = std::to_string(20 + i % 180);
    store.num = std::to_string(i * 7 % 5000);
    store.longitude = std::to_string(118.34 + (i % 100) * 0.001);
    store.latitude = std::to_string(35.06 + (i / 100) * 0.001);
    store.imgURLList = {server.url("/pictures/store_" + std::to_string(i) + ".jpg")};
    stores.push_back({NearbyRow::Kind::Store, static_cast<std::size_t>(i), storeRowTexts(store), store});
  }
  auto rows = std::make_unique<RowList<NearbyRow>>([](const NearbyRow& row) { return row.store.storeId; },
                                                   [](const NearbyRow& a, const NearbyRow& b) { return a.texts == b.texts; });
  rows->assign(std::move(stores));

  // The page's layout around its list: header bar, then the scroller whose own child is
  // the list, clamped and with the page's margins.
  auto window = std::make_unique<Gtk::Window>();
  window->set_default_size(kWidth, kHeight);
  window->set_resizable(false);
  auto* column = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  column->append(*Gtk::manage(Glib::wrap(adw_header_bar_new())));
  auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
  scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  scroller->set_vexpand(true);
  FrameStats stats;
  auto factory = actionRowFactory<NearbyRow>([](const NearbyRow& row) { return row.texts; }, pictures.get());
  // Counted after the factory's own handlers: the rows bound, the pictures that arrived.
  factory->signal_setup().connect([&stats](const Glib::RefPtr<Gtk::ListItem>& item) {
    std::vector<PictureView*> thumbnails;
    if (item->get_child() != nullptr) collectThumbnails(GTK_WIDGET(item->get_child()->gobj()), thumbnails);
    for (PictureView* view : thumbnails) {
      view->onShown = [&stats, view](bool shown) {
        if (!shown || !stats.recording) return;
        ++stats.arrivals;
        stats.shownPictures.insert(view->url());
      };
    }
  });
  factory->signal_bind().connect([&stats](const Glib::RefPtr<Gtk::ListItem>&) { ++stats.binds; });
  Gtk::ListView* list = listView(rows->model(), factory, "stores");
  list->set_margin_start(12);
  list->set_margin_end(12);
  GtkWidget* listClamp = adw_clamp_scrollable_new();
  adw_clamp_scrollable_set_maximum_size(ADW_CLAMP_SCROLLABLE(listClamp), 640);
  adw_clamp_scrollable_set_child(ADW_CLAMP_SCROLLABLE(listClamp), GTK_WIDGET(list->gobj()));
  scroller->set_child(*Gtk::manage(Glib::wrap(listClamp)));
  column->append(*scroller);
  window->set_child(*column);
  window->present();

  int status = 0;
  const auto fail = [&](const std::string& why) {
    std::cerr << "gtk_scroll_bench: " << why << '\n';
    status = 1;
  };
  const auto firstScreenDrawn = [&] {
    const std::vector<PictureView*> shown = visibleThumbnails(*scroller);
    return shown.size() >= 3 && std::all_of(shown.begin(), shown.end(), [](PictureView* v) { return v->showsPicture(); });
  };
  if (!runUntil(firstScreenDrawn, 30)) {
    const std::size_t rowsShown = visibleThumbnails(*scroller).size();
    fail(rowsShown < 3 ? "the list was not drawn (" + std::to_string(rowsShown) + " rows on screen)"
                       : "the first screen's pictures did not arrive within 30 s (" + std::to_string(served.load()) +
                             " served)");
  }

  GskRenderer* renderer = gtk_native_get_renderer(GTK_NATIVE(window->gobj()));
  const char* chosen = getenv("GSK_RENDERER");
  std::cout << "renderer: " << (renderer != nullptr ? G_OBJECT_TYPE_NAME(renderer) : "none")
            << " (GSK_RENDERER=" << (chosen != nullptr ? chosen : "") << ")\n";

  GdkFrameClock* clock = gtk_widget_get_frame_clock(GTK_WIDGET(window->gobj()));
  std::vector<gulong> handlers;
  if (status == 0 && clock == nullptr) fail("the window has no frame clock");
  if (status == 0) {
    handlers.push_back(g_signal_connect(clock, "before-paint", G_CALLBACK(+[](GdkFrameClock*, FrameStats* s) {
                                          const auto now = SteadyClock::now();
                                          if (s->recording && s->start != SteadyClock::time_point{}) {
                                            s->intervals.push_back(msSince(s->start, now));
                                          }
                                          s->start = s->updated = s->laidOut = s->painted = now;
                                          s->startCpu = threadCpuMs();
                                          s->inFrame = true;
                                        }),
                                        &stats));
    handlers.push_back(g_signal_connect_after(clock, "update", G_CALLBACK(+[](GdkFrameClock*, FrameStats* s) {
                                                s->updated = SteadyClock::now();
                                              }),
                                              &stats));
    handlers.push_back(g_signal_connect_after(clock, "layout", G_CALLBACK(+[](GdkFrameClock*, FrameStats* s) {
                                                s->laidOut = SteadyClock::now();
                                              }),
                                              &stats));
    handlers.push_back(g_signal_connect_after(clock, "paint", G_CALLBACK(+[](GdkFrameClock*, FrameStats* s) {
                                                s->painted = SteadyClock::now();
                                              }),
                                              &stats));
    handlers.push_back(g_signal_connect_after(clock, "after-paint", G_CALLBACK(+[](GdkFrameClock* c, FrameStats* s) {
                                                const auto now = SteadyClock::now();
                                                if (!s->inFrame) return;
                                                s->inFrame = false;
                                                if (!s->recording) return;
                                                s->work.push_back(msSince(s->start, now));
                                                s->cpu.push_back(threadCpuMs() - s->startCpu);
                                                // A phase that did not run ends where the one before it did.
                                                s->updated = std::max(s->updated, s->start);
                                                s->laidOut = std::max(s->laidOut, s->updated);
                                                s->painted = std::max(s->painted, s->laidOut);
                                                s->updateMs.push_back(msSince(s->start, s->updated));
                                                s->layoutMs.push_back(msSince(s->updated, s->laidOut));
                                                s->paintMs.push_back(msSince(s->laidOut, s->painted));
                                                if (GdkFrameTimings* t = gdk_frame_clock_get_current_timings(c)) {
                                                  if (gint64 r = gdk_frame_timings_get_refresh_interval(t); r > 0) {
                                                    s->refreshUs = r;
                                                  }
                                                }
                                                s->frameBinds.push_back(std::exchange(s->binds, 0));
                                                s->frameArrivals.push_back(std::exchange(s->arrivals, 0));
                                              }),
                                              &stats));
  }

  // Two rows a frame, from the rows' own height once drawn.
  double step = 0;
  if (status == 0) {
    std::vector<PictureView*> shown = visibleThumbnails(*scroller);
    Gtk::Widget* row = shown.front()->get_parent();
    while (row != nullptr && !GTK_IS_LIST_BOX_ROW(row->gobj())) row = row->get_parent();
    const int rowHeight = row != nullptr ? row->get_height() : 0;
    if (rowHeight <= 0) fail("the rows have no height");
    step = kRowsPerFrame * rowHeight;
    std::cout << "rows: " << kStores << ", " << rowHeight << " px each; " << step << " px a frame (" << kRowsPerFrame
              << " rows), window " << kWidth << "x" << kHeight << '\n';
  }

  long rssBefore = 0;
  bool peakReset = false;
  const int servedBefore = served.load();
  struct Scroll {
    Glib::RefPtr<Gtk::Adjustment> adjustment;
    double step = 0;
    int direction = 1;
    bool done = false;
    int frames = 0;
  } scroll{scroller->get_vadjustment(), step};
  const auto scrollStart = SteadyClock::now();
  if (status == 0) {
    rssBefore = statusKb("VmRSS");
    peakReset = resetPeakRss();
    stats.binds = stats.arrivals = 0;  // the first screen's
    stats.recording = true;
    gtk_widget_add_tick_callback(
        GTK_WIDGET(scroller->gobj()),
        +[](GtkWidget*, GdkFrameClock*, gpointer data) -> gboolean {
          auto* s = static_cast<Scroll*>(data);
          ++s->frames;
          const double bottom = s->adjustment->get_upper() - s->adjustment->get_page_size();
          const double next = std::clamp(s->adjustment->get_value() + s->direction * s->step, 0.0, bottom);
          s->adjustment->set_value(next);
          if (s->direction > 0 && next >= bottom) s->direction = -1;
          if (s->direction < 0 && next <= 0) {
            s->done = true;
            return G_SOURCE_REMOVE;
          }
          return G_SOURCE_CONTINUE;
        },
        &scroll, nullptr);
    if (!runUntil([&] { return scroll.done; }, 300)) fail("the scroll did not end within 300 s");
    // The frame that drew the top again.
    runUntil([&] { return !stats.inFrame && stats.work.size() >= static_cast<std::size_t>(scroll.frames); }, 1);
    stats.recording = false;
  }
  const double scrollMs = msSince(scrollStart, SteadyClock::now());
  const long rssEnd = statusKb("VmRSS");
  const long peak = statusKb("VmHWM");
  if (status == 0 && !runUntil(firstScreenDrawn, 30)) fail("the top's pictures were not drawn again within 30 s");

  if (status == 0) {
    if (stats.work.empty()) fail("no frame was drawn during the scroll");
    const double refreshMs = (stats.refreshUs > 0 ? stats.refreshUs : 16667) / 1000.0;
    const auto late = std::count_if(stats.intervals.begin(), stats.intervals.end(),
                                    [&](double ms) { return ms > 2 * refreshMs; });
    const double median = percentile(stats.work, 50);
    const double p95 = percentile(stats.work, 95);
    const std::string name = renderer != nullptr ? G_OBJECT_TYPE_NAME(renderer) : "none";
    std::printf("[%s] frames drawn: %zu in %.0f ms (%.1f a second), refresh interval %.1f ms\n", name.c_str(),
                stats.work.size(), scrollMs, stats.work.size() * 1000.0 / scrollMs, refreshMs);
    std::printf("[%s] frame work median %.2f ms, p95 %.2f ms, max %.2f ms\n", name.c_str(), median, p95,
                *std::max_element(stats.work.begin(), stats.work.end()));
    std::printf("[%s] frame CPU (interface thread) median %.2f ms, p95 %.2f ms\n", name.c_str(),
                percentile(stats.cpu, 50), percentile(stats.cpu, 95));
    std::printf("[%s] p95 of each phase: update %.2f ms, layout %.2f ms, paint %.2f ms\n", name.c_str(),
                percentile(stats.updateMs, 95), percentile(stats.layoutMs, 95), percentile(stats.paintMs, 95));
    std::printf("[%s] frames later than 2x the refresh interval: %ld of %zu\n", name.c_str(), static_cast<long>(late),
                stats.intervals.size());
    std::printf("[%s] pictures served during the scroll: %d; stores whose thumbnail a row showed: %zu of %d\n",
                name.c_str(), served.load() - servedBefore, stats.shownPictures.size(), kStores);
    // What the frames over the budget did, against the others.
    double slowBinds = 0, slowArrivals = 0, fastBinds = 0, fastArrivals = 0;
    std::size_t slow = 0;
    for (std::size_t i = 0; i < stats.cpu.size(); ++i) {
      const bool over = stats.cpu[i] > kFrameTargetMs;
      slow += over;
      (over ? slowBinds : fastBinds) += stats.frameBinds[i];
      (over ? slowArrivals : fastArrivals) += stats.frameArrivals[i];
    }
    const std::size_t fast = stats.cpu.size() - slow;
    std::printf("[%s] frames over %.1f ms CPU: %zu, binding %.1f rows and following %.1f picture arrivals each; "
                "the others %.1f rows and %.1f arrivals\n",
                name.c_str(), kFrameTargetMs, slow, slow ? slowBinds / slow : 0.0, slow ? slowArrivals / slow : 0.0,
                fast ? fastBinds / fast : 0.0, fast ? fastArrivals / fast : 0.0);
    const double growthMb = (peak - rssBefore) / 1024.0;
    std::printf("[%s] RSS before the scroll %.1f MB, peak%s %.1f MB, at the end %.1f MB\n", name.c_str(),
                rssBefore / 1024.0, peakReset ? "" : " (since start)", peak / 1024.0, rssEnd / 1024.0);
    std::printf("p95 frame %.2f ms (target %.1f) ratio %.3f %s\n", p95, kFrameTargetMs, p95 / kFrameTargetMs,
                p95 <= kFrameTargetMs ? "met" : "MISSED");
    const double cpu95 = percentile(stats.cpu, 95);
    std::printf("p95 frame CPU %.2f ms (target %.1f) ratio %.3f %s\n", cpu95, kFrameTargetMs, cpu95 / kFrameTargetMs,
                cpu95 <= kFrameTargetMs ? "met" : "MISSED");
    std::printf("memory growth %.1f MB (target %.0f) ratio %.3f %s\n", growthMb, kMemoryTargetMb, growthMb / kMemoryTargetMb,
                growthMb <= kMemoryTargetMb ? "met" : "MISSED");
  }

  for (gulong handler : handlers) g_signal_handler_disconnect(clock, handler);
  // The rows' pictures hold tickets of the loader: the window goes first.
  window.reset();
  rows.reset();
  pictures.reset();
  installed.reset();
  env = Env{};
  server.shutdown();
  std::filesystem::remove_all(cacheDir);
  std::cout << "load average at end: " << loadAverage() << '\n';
  return status;
}

}  // namespace
}  // namespace qmv::gtk

int main() { return qmv::gtk::run(); }
