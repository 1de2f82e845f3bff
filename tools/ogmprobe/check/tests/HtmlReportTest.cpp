// SPDX-License-Identifier: Apache-2.0
#include "check/HtmlReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CheckedFiles.h"

namespace ogmprobe::check {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string page(const CheckedFile& file, const HtmlReport::Timeline& timeline = {}) {
    HtmlReport report;
    report.add(file, timeline);
    Summary summary;
    summary.add(file);
    return report.document(summary, "a list");
}

TEST(HtmlReportTest, EachFileHasARowWithVerdictReasonsAndTheCommandOfItsTimeline) {
    const std::string text = page(checkedFile("films/a b.ogm", {reasonOf("no-decoder", "none")}));
    EXPECT_THAT(text, HasSubstr("<bdi>films/a b.ogm</bdi>"));
    EXPECT_THAT(text, HasSubstr("does not play"));
    EXPECT_THAT(text, HasSubstr("track 0 (audio): none <code>no-decoder</code>"));
    EXPECT_THAT(text, HasSubstr("ogmprobe timeline &#39;films/a b.ogm&#39; -o"));
    EXPECT_THAT(text, HasSubstr("1 file: 0 play"));
}

TEST(HtmlReportTest, ATimelineThatWasDrawnIsLinked) {
    EXPECT_THAT(page(checkedFile("a.ogm"), {"../drawings/00001-a.html", ""}),
                HasSubstr("<a href=\"../drawings/00001-a.html\">"));
}

TEST(HtmlReportTest, NothingInAFoldersNameChangesTheLink) {
    EXPECT_THAT(page(checkedFile("a.ogm"), {"a:#1?/50% <\"'&\xff/\xc3\xa4.html", ""}),
                HasSubstr("<a href=\"a%3A%231%3F/50%25%20%3C%22%27%26%FF/%C3%A4.html\">"));
}

TEST(HtmlReportTest, ATimelineThatCouldNotBeDrawnHasItsReasonBesideTheCommand) {
    const std::string text = page(checkedFile("a.ogm"), {"", "<b> exists"});
    EXPECT_THAT(text, HasSubstr("<td>not drawn: &lt;b&gt; exists <code>ogmprobe timeline"));
    EXPECT_THAT(text, Not(HasSubstr("<a href")));
}

TEST(HtmlReportTest, NothingFromAFileBecomesMarkup) {
    CheckedFile file = checkedFile("<script>alert(1)</script>\".ogm",
                                   {reasonOf("no-decoder", "<img src=x onerror=y>")});
    file.tracks[0].kind = "<b>";
    file.tracks[0].reasons[0].subject = "</table>";
    const std::string text = page(file, {"\"><script>", "\"><script>"});
    EXPECT_THAT(text, Not(HasSubstr("<script>alert")));
    EXPECT_THAT(text, Not(HasSubstr("<img")));
    EXPECT_THAT(text, Not(HasSubstr("\"><script>")));
    EXPECT_THAT(text, Not(HasSubstr("(<b>")));
    EXPECT_THAT(text, Not(HasSubstr(": </table>")));
}

TEST(HtmlReportTest, ThePageLoadsNothingFromElsewhere) {
    const std::string text = page(checkedFile("a"));
    EXPECT_THAT(text, HasSubstr("default-src 'none'"));
    EXPECT_THAT(text, Not(HasSubstr("src=\"http")));
    EXPECT_THAT(text, Not(HasSubstr("{{")));
}

TEST(HtmlReportTest, TheCommandOfATimelineIsSafeInAShell) {
    EXPECT_EQ(timelineCommand("it's $(x).ogm"),
              R"(ogmprobe timeline 'it'\''s $(x).ogm' -o './it'\''s $(x).html')");
    EXPECT_EQ(timelineCommand("-v.ogm"), "ogmprobe timeline './-v.ogm' -o './-v.html'");
}

}  // namespace
}  // namespace ogmprobe::check
