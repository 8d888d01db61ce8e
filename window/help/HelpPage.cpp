#include "window/help/HelpPage.h"

#include "window/ground/Named.h"

#include <QDialog>
#include <QTextBrowser>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr QSize OpeningSize{620, 640};

const QString Text = uR"(
<h2>Measuring</h2>
<ol>
<li><b>Setting...</b> in the frame "Device" chooses the boards, channels and ports. A simulated board stands in
where there is no real one.</li>
<li>Turn on <b>AI</b> (analog input), <b>DI</b> (digital input) or both.</li>
<li>Tick <b>AI Save2Disk</b> and <b>DI Save2Disk</b> to record. Without a tick the samples are drawn only.</li>
<li><b>Start</b> begins, and the same button stops.</li>
<li><b>Save As</b> keeps what was recorded in a folder of your choice.</li>
<li><b>History...</b> opens what was saved; it can also be dropped on the window. <b>Convert</b> writes it as text
for a spreadsheet.</li>
</ol>

<h2>Keys</h2>
<h3>In the window</h3>
<table cellpadding="3">
<tr><td><b>F5</b></td><td>start and stop</td></tr>
<tr><td><b>Ctrl+S</b></td><td>save the recording (Save As)</td></tr>
<tr><td><b>Ctrl+O</b></td><td>open a recording (History)</td></tr>
<tr><td><b>Ctrl+Q</b></td><td>leave the program (Exit)</td></tr>
<tr><td><b>F1</b></td><td>this page</td></tr>
<tr><td><b>Tab</b></td><td>go to the next control; the space bar presses it</td></tr>
</table>
<h3>In the chart</h3>
<table cellpadding="3">
<tr><td><b>Right click</b></td><td>choose what dragging does: zoom or pan</td></tr>
<tr><td><b>Double click</b></td><td>fit all axes</td></tr>
<tr><td><b>Wheel</b></td><td>zoom the time about the pointer; with <b>Shift</b> the value axis under it</td></tr>
<tr><td><b>Arrows</b></td><td>pan</td></tr>
<tr><td><b>+</b> and <b>-</b></td><td>zoom the time; <b>Shift+Up</b> and <b>Shift+Down</b> the values</td></tr>
<tr><td><b>Home</b>, <b>End</b></td><td>go to the oldest and the newest samples</td></tr>
<tr><td><b>Ctrl+Z</b>, <b>Backspace</b></td><td>take back the last zoom or pan</td></tr>
<tr><td><b>Space</b></td><td>hold the view of a running session, and let it go on</td></tr>
<tr><td><b>Shift+click</b></td><td>place a cursor; its flag in the margin drags it</td></tr>
<tr><td><b>Ctrl+Left</b>, <b>Ctrl+Right</b></td><td>step the cursor by a sample; with <b>Shift</b> the other one</td></tr>
<tr><td><b>Delete</b></td><td>take the cursors away</td></tr>
<tr><td><b>Esc</b></td><td>give up a zoom or a drag that is under way</td></tr>
<tr><td><b>Ctrl+C</b></td><td>copy the chart as a picture; with <b>Shift</b> the numbers of the cursors as text</td></tr>
<tr><td><b>Ctrl+Shift+S</b></td><td>save the chart as a picture</td></tr>
<tr><td><b>Ctrl+P</b></td><td>print the chart</td></tr>
</table>

<h2>Fast AI or SoftAI</h2>
<p><b>Fast AI</b> lets the board's own clock pace the conversions: evenly spaced samples at up to the board's highest
rate, with the board's triggers, but no digital input and no thermocouples. Choose it for signals that change within
milliseconds.</p>
<p><b>SoftAI and/or DI</b> lets the program take a scan at each interval, of a millisecond or more: voltages,
thermocouples and digital lines together, but a busy machine can take one late. Choose it for everything slow.</p>
<p>The OK of a page in the settings chooses between them.</p>

<h2>The line at the foot</h2>
<p>A red mark and "Recording" stand there while samples go to the disk, "Running, not recorded" while they do not. What
was lost stands there in red until the next start: scans that could not be read, overruns of the board, ticks for which
the machine was too busy. Each is marked in the chart; the pointer on a mark tells more.</p>

<h2>Where files go</h2>
<p>While it runs, a session records into a work folder <i>tl....tmp</i> beside the program or, where that cannot be
written, in <i>~/.local/state/tracelet</i>. <b>Save As</b> makes a folder with Project.tlp (open this one with
History), AI.tld, DI.tld and Session.json. <b>Convert</b> makes a folder with AI.xlt and DI.xlt. Nothing else is
written.</p>

<h2>What is kept and what is deleted</h2>
<ul>
<li>A saved recording is never changed or deleted, unless you save another into the same folder.</li>
<li>A recording that was not saved is kept when the next session starts and when the program is left, for a week; at
its next start the program offers it at the window's foot. Only the last one is kept.</li>
<li>After a crash or a power failure all recordings that were left behind are offered in the same way.</li>
<li>The work folder is deleted when the program is left.</li>
<li>Samples in the chart only (no box ticked) are gone with the next start.</li>
</ul>
)"_s;

QDialog* MakePage(QWidget& owner) {
    auto* page = Named<QDialog>("HelpPage", &owner);
    page->setWindowTitle(u"Tracelet help"_s);
    page->setAttribute(Qt::WA_DeleteOnClose);
    auto* browser = Named<QTextBrowser>("HelpText");
    browser->setAccessibleName(u"Help"_s);
    browser->setFrameShape(QFrame::NoFrame);
    browser->setHtml(Text);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins({});
    layout->addWidget(browser);
    page->resize(OpeningSize);
    return page;
}

} // namespace

void ShowHelp(QWidget& owner) {
    auto* page = owner.findChild<QDialog*>(u"HelpPage"_s);
    if (page == nullptr)
        page = MakePage(owner);
    page->show();
    page->raise();
    page->activateWindow();
}

} // namespace tracelet
