// SPDX-License-Identifier: GPL-3.0-or-later

#include "helpwindow.h"

#include "dialogs/windowplace.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QImage>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize UsualSize(720, 560);

// Shows pictures no wider than itself.
class Pages : public QTextBrowser
{
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl &name) override
    {
        QVariant resource = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource)
            return resource;
        const QImage picture = QImage::fromData(resource.toByteArray());
        const int room = viewport()->width() - verticalScrollBar()->sizeHint().width() -
                         4 * int(document()->documentMargin());
        return picture.width() > room && room > 0
                   ? picture.scaledToWidth(room, Qt::SmoothTransformation)
                   : picture;
    }
};

} // namespace

HelpWindow::HelpWindow(QString theFolder)
    : folder(std::move(theFolder))
    , browser(new Pages(this))
{
    setObjectName(u"HelpWindow"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Quorvel manual"));
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    browser->setAccessibleName(tr("Page of the manual"));
    browser->verticalScrollBar()->setAccessibleName(tr("Scroll up and down"));
    browser->horizontalScrollBar()->setAccessibleName(tr("Scroll to the side"));
    browser->setOpenExternalLinks(true);

    auto *back = new QPushButton(tr("&Back"), this);
    auto *forward = new QPushButton(tr("&Forward"), this);
    auto *contents = new QPushButton(tr("&Contents"), this);
    auto *closing = new QPushButton(tr("C&lose"), this);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {back, forward, contents, closing}) {
        // Return follows the link that has the keyboard.
        button->setAutoDefault(false);
        if (button == closing)
            buttons->addStretch();
        buttons->addWidget(button);
    }
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(browser);

    back->setEnabled(false);
    forward->setEnabled(false);
    connect(browser, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
    connect(browser, &QTextBrowser::forwardAvailable, forward, &QPushButton::setEnabled);
    connect(back, &QPushButton::clicked, browser, &QTextBrowser::backward);
    connect(forward, &QPushButton::clicked, browser, &QTextBrowser::forward);
    connect(contents, &QPushButton::clicked, this, [this] { showPlace(u"index.html"_s); });
    connect(closing, &QPushButton::clicked, this, &QWidget::close);

    resize(UsualSize.boundedTo(screen()->availableSize() * 9 / 10));
    keepPlace(this);
    browser->setFocus();
}

void HelpWindow::showPlace(const QString &place)
{
    const QString page = folder + u'/' + place.section(u'#', 0, 0);
    if (folder.isEmpty() || !QFileInfo::exists(page)) {
        browser->setPlainText(
            tr("The manual is not installed. The package quorvel-doc brings it."));
        return;
    }
    // Laid out for its real width, a page is scrolled to the right place.
    show();
    QUrl url = QUrl::fromLocalFile(page);
    url.setFragment(place.section(u'#', 1));
    browser->setSource(url);
}
