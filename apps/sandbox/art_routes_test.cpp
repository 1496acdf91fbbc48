#include "apps/sandbox/art_routes.h"

#include "apps/sandbox/demo_catalogue.h"
#include "apps/sandbox/sandbox_store.h"
#include "apps/sandbox/sandbox_test_support.h"
#include "core/common/color_contrast.h"
#include "platform/codecs/image_codecs.h"

namespace qmv::sandbox::testing {
namespace {

using ArtRoutesTest = SandboxTest;

ImageSize sizeOf(const httplib::Result& res) {
  if (!res || res->status != 200) return {};
  return readImageSize(res->body, {}).valueOr({});
}

TEST_F(ArtRoutesTest, EveryPictureHasItsDeclaredSizeAndRecordsDiffer) {
  httplib::Client& http = api_->raw();
  const struct {
    const char* path;
    ImageSize size;
    const char* type;
  } pictures[] = {
      {"/oss/art/store_1_1.jpg", {750, 500}, "image/jpeg"},   {"/oss/art/commodity_1.jpg", {750, 420}, "image/jpeg"},
      {"/oss/art/commodity_2.jpg", {750, 420}, "image/jpeg"}, {"/oss/art/desc_1.jpg", {750, 1000}, "image/jpeg"},
      {"/oss/art/banner_2.jpg", {750, 300}, "image/jpeg"},    {"/oss/art/product_1.jpg", {750, 750}, "image/jpeg"},
      {"/oss/art/wheel_1.jpg", {750, 750}, "image/jpeg"},     {"/oss/art/category_42.png", {96, 96}, "image/png"},
      {"/oss/art/store_3_2.jpg?w=375", {375, 250}, "image/jpeg"},
      {"/oss/art/category_11.png?w=128", {96, 96}, "image/png"},  // never enlarged
      {"/oss/welcome.png", {720, 1280}, "image/png"},
      {"/oss/13800000001.png", {256, 256}, "image/png"},
  };
  for (const auto& picture : pictures) {
    const auto res = http.Get(picture.path);
    EXPECT_EQ(sizeOf(res), picture.size) << picture.path;
    EXPECT_EQ(res ? res->get_header_value("Content-Type") : "", picture.type) << picture.path;
  }
  // Every sub-category icon the catalogue and the home's templates hand out is there.
  for (const Json& groups : {catalogue(), templates()}) {
    for (const Json& group : groups) {
      for (const Json& sub : group["list"]) {
        const std::string path = sub["imgURL"];
        EXPECT_EQ(sizeOf(http.Get(path)), (ImageSize{96, 96})) << path;
      }
    }
  }
  // Icons and portraits are round on a transparent square.
  const auto icon = http.Get("/oss/art/category_42.png");
  ASSERT_TRUE(icon);
  const auto pixels = decodeImage(icon->body, {});
  ASSERT_TRUE(pixels.ok());
  EXPECT_EQ(pixels->pixels[3], '\0');
  EXPECT_EQ(static_cast<unsigned char>(pixels->pixels[48 * pixels->stride + 48 * 4 + 3]), 255);

  const auto one = http.Get("/oss/art/store_1_1.jpg"), two = http.Get("/oss/art/store_2_1.jpg");
  ASSERT_TRUE(one && two);
  EXPECT_NE(one->body, two->body);
  EXPECT_NE(http.Get("/oss/art/store_1_2.jpg")->body, one->body);
  // The records hand these addresses out.
  const Json store = api_->get("getStoreDetailInfo", {{"storeId", "1"}});
  EXPECT_NE(store.dump().find("/oss/art/store_1_1.jpg"), std::string::npos) << store.dump();
}

TEST_F(ArtRoutesTest, WhiteTitlesReadOnEveryBannerAndStorePhoto) {
  // The category colours (banners by id, stores by category); the corners are the
  // gradient's far ends.
  for (const std::string path : {"/oss/art/banner_1.jpg", "/oss/art/banner_2.jpg", "/oss/art/banner_3.jpg",
                                 "/oss/art/store_1_1.jpg", "/oss/art/store_11_1.jpg", "/oss/art/store_18_2.jpg",
                                 "/oss/art/store_22_1.jpg"}) {
    const auto res = api_->raw().Get(path);
    ASSERT_TRUE(res && res->status == 200) << path;
    const auto picture = decodeImage(res->body, {});
    ASSERT_TRUE(picture.ok()) << path;
    for (const auto& [x, y] : {std::pair{2, 2}, std::pair{picture->width - 3, 2}, std::pair{2, picture->height - 3},
                               std::pair{picture->width - 3, picture->height - 3}}) {
      const auto* p = reinterpret_cast<const unsigned char*>(&picture->pixels[y * picture->stride + x * 4]);
      const Color ground{p[0], p[1], p[2]};
      EXPECT_GE(contrastRatio(ground, {255, 255, 255}), kLargeTextContrast)
          << path << " at " << x << ',' << y << ": " << ground.red << ',' << ground.green << ',' << ground.blue;
    }
  }
}

TEST_F(ArtRoutesTest, PicturesAreKeptAndRevalidated) {
  httplib::Client& http = api_->raw();
  for (const std::string path : {"/oss/art/banner_1.jpg", "/oss/welcome.png"}) {
    const auto first = http.Get(path);
    ASSERT_TRUE(first);
    ASSERT_EQ(first->status, 200);
    const std::string etag = first->get_header_value("ETag");
    const std::string modified = first->get_header_value("Last-Modified");
    EXPECT_EQ(etag, "\"" + StringUtil::getmd5WithString(first->body) + "\"");
    EXPECT_FALSE(modified.empty());
    EXPECT_FALSE(first->get_header_value("Cache-Control").empty());
    EXPECT_EQ(http.Get(path, {{"If-None-Match", etag}})->status, 304);
    EXPECT_EQ(http.Get(path, {{"If-Modified-Since", modified}})->status, 304);
    const auto changed = http.Get(path, {{"If-None-Match", "\"0123\""}});
    EXPECT_EQ(changed->status, 200);
    EXPECT_EQ(changed->body, first->body);
    EXPECT_EQ(http.Get(path, {{"If-Modified-Since", "Thu, 01 Jan 1970 00:00:00 GMT"}})->status, 200);
  }
  EXPECT_EQ(http.Get("/oss/art/banner_1.jpg")->get_header_value("Cache-Control"), "public, max-age=86400");
  EXPECT_TRUE(std::filesystem::exists(home_ / "oss" / "art" / "banner_1.jpg"));
}

TEST_F(ArtRoutesTest, OnlyKnownRecordsAreDrawnAndNothingWritesArt) {
  httplib::Client& http = api_->raw();
  for (const char* path : {"/oss/art/store_999_1.jpg", "/oss/art/store_1_3.jpg", "/oss/art/store_1_1.png",
                           "/oss/art/category_99.png", "/oss/art/commodity_0.jpg", "/oss/art/..%2Fsandbox.db",
                           "/oss/art/../sandbox.db", "/oss/art/.hidden", "/oss/art/a/b.jpg", "/oss/art"}) {
    const auto res = http.Get(path);
    ASSERT_TRUE(res) << path;
    EXPECT_EQ(res->status, 404) << path;
  }
  EXPECT_EQ(http.Get("/oss/art/store_1_1.jpg?w=100")->status, 400);
  EXPECT_FALSE(std::filesystem::exists(home_ / "oss" / "art" / "store_999_1.jpg"));

  // A member's upload stays one segment: art/ is out of its reach.
  const auto original = http.Get("/oss/art/store_1_1.jpg")->body;
  const httplib::Headers signedIn = {{"Cookie", "sessionId=" + api_->login()}};
  for (const char* path : {"/oss/art/store_1_1.jpg", "/oss/art%2Fstore_1_1.jpg"}) {
    const auto put = http.Put(path, signedIn, "x", "application/octet-stream");
    ASSERT_TRUE(put);
    EXPECT_NE(put->status, 200) << path;
  }
  EXPECT_EQ(http.Get("/oss/art/store_1_1.jpg")->body, original);

  // Old addresses lead to the picture that replaced them.
  const auto moved = http.Get("/sandbox/img/commodity_3.png");
  ASSERT_TRUE(moved);
  EXPECT_EQ(moved->status, 301);
  EXPECT_EQ(moved->get_header_value("Location"), "/oss/art/commodity_5.jpg");
  EXPECT_EQ(http.Get("/sandbox/img/unknown.png")->status, 404);
}

TEST_F(ArtRoutesTest, AHomeSeededWithPlaceholderAddressesIsRewrittenOnce) {
  api_.reset();
  server_.reset();
  {
    auto db = SandboxStore::open(home_ / "sandbox.db").value();
    ASSERT_TRUE(db->transact(true, [&] {
                    db->executeScript(
                        "UPDATE stores SET images = '/sandbox/img/store_' || id || '_1.png|/sandbox/img/store_' || id "
                        "|| '_2.png'; UPDATE commodities SET image = '/sandbox/img/voucher.png', desc_image = "
                        "'/sandbox/img/desc.png'; UPDATE banners SET image = '/sandbox/img/banner_1.png'; "
                        "UPDATE wheels SET image = '/sandbox/img/wheel.png'; "
                        "UPDATE products SET image = '/sandbox/img/p1.png'; "
                        "UPDATE orders SET image = '/sandbox/img/commodity_1.png'; "
                        "DELETE FROM meta WHERE key = 'art_addresses'");
                    return true;
                  }).ok());
  }
  server_ = std::make_unique<SandboxServer>(SandboxOptions{home_, 0, "127.0.0.1", true});
  ASSERT_TRUE(server_->start().ok());
  server_.reset();
  auto db = SandboxStore::open(home_ / "sandbox.db").value();
  std::vector<Json> rows;
  ASSERT_TRUE(db->transact(false, [&] {
                  rows = db->query(
                      "SELECT images AS image FROM stores WHERE id = 4 UNION ALL SELECT image || desc_image FROM "
                      "commodities WHERE id = 6 UNION ALL SELECT image FROM banners WHERE id = 3 UNION ALL SELECT "
                      "image FROM wheels WHERE id = 2 UNION ALL SELECT image FROM products WHERE id = 2 UNION ALL "
                      "SELECT image FROM orders WHERE kind = '2' AND commodity_id = 3 UNION ALL "
                      "SELECT image FROM orders WHERE kind = '1' AND store_id = 4");
                  return true;
                }).ok());
  std::vector<std::string> images;
  for (const Json& row : rows) images.push_back(row["image"].get<std::string>());
  EXPECT_EQ(images, (std::vector<std::string>{"/oss/art/store_4_1.jpg|/oss/art/store_4_2.jpg",
                                              "/oss/art/commodity_6.jpg/oss/art/desc_6.jpg", "/oss/art/banner_3.jpg",
                                              "/oss/art/wheel_2.jpg", "/oss/art/product_2.jpg",
                                              "/oss/art/commodity_3.jpg", "/oss/art/store_4_1.jpg"}));
}

}  // namespace
}  // namespace qmv::sandbox::testing
