#include "window/ground/Handler.h"

#include "core/base/RunTimeError.h"

#include <QLoggingCategory>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> noted;

void Note(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    EXPECT_EQ(type, QtDebugMsg);
    EXPECT_STREQ(context.category, "tracelet.quiet");
    noted.push_back(text.toStdString());
}

std::vector<std::string> NotedWith(const QString& rules) {
    noted.clear();
    QLoggingCategory::setFilterRules(rules);
    const QtMessageHandler before = qInstallMessageHandler(Note);
    QuietHandler([] { throw RunTimeError("50 % of \u00b0C"); });
    QuietHandler([] {});
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules({});
    return noted;
}

TEST(QuietHandler, NotesErrorsOnlyWhereAsked) {
    EXPECT_THAT(NotedWith({}), IsEmpty());
    EXPECT_THAT(NotedWith(u"tracelet.quiet.debug=true"_s), ElementsAre("50 % of \u00b0C"));
}

} // namespace
} // namespace tracelet
