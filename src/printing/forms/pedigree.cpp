// SPDX-License-Identifier: GPL-3.0-or-later
#include "printing/forms/pedigree.h"

#include "genetics/FamilyTree.h"
#include "printing/forms/PedigreeParts.h"
#include "records/Animal.h"
#include "records/forms/RecordPage.h"
#include "records/forms/frmPopup.h"
#include "base/Folders.h"
#include "store/DataFile.h"

#include <QCursor>
#include <QGuiApplication>
#include <QLabel>
#include <QResizeEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSvgRenderer>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

namespace {

const QStringList kHeadings = {QStringLiteral("Parents"),
                               QStringLiteral("Grandparents"),
                               QStringLiteral("Great Grandparents"),
                               QStringLiteral("G G Grandparents"),
                               QStringLiteral("G G G Grandparents"),
                               QStringLiteral("G G G G Grandparents"),
                               QStringLiteral("G G G G G Grandparents")};

constexpr int kPopupDelay = 400;      // ms the mouse rests on a box before its pop-up shows
constexpr int kPopupOffset = 200;     // twips between the cursor and the pop-up
constexpr int kScrollStep = 500;      // twips per step of a scroll bar

QFont templateFont(const QString& name, double size, int bold, int italic)
{
    QFont f(name);
    f.setPointSizeF(size > 0 ? size : 9);
    f.setBold(bold != 0);
    f.setItalic(italic != 0);
    return f;
}

} // namespace

// The connector pictures live in this static library; outside any namespace, as the macro needs.
static void initResources() { Q_INIT_RESOURCE(pedigree); }

QColor ScreenColour(const QString& text, const QPalette& palette, const QColor& fallback)
{
    const auto colour = ParseTemplateColour(text);
    if (!colour)
        return fallback;
    if (!colour->system)
        return QColor(colour->red, colour->green, colour->blue);
    switch (colour->index) {
    case 5: // window
        return palette.color(QPalette::Base);
    case 8: // window text
        return palette.color(QPalette::WindowText);
    case 13: // highlight
        return palette.color(QPalette::Highlight);
    case 14:
        return palette.color(QPalette::HighlightedText);
    case 15: // button face
        return palette.color(QPalette::Button);
    case 17: // grey text
        return palette.color(QPalette::PlaceholderText);
    case 18: // button text
        return palette.color(QPalette::ButtonText);
    default:
        return palette.color(QPalette::WindowText);
    }
}

pedigree::pedigree(QWidget* parent) : QWidget(parent)
{
    initResources();
    settings = DefaultPrintSettings();

    scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("scrPedigree"));
    scroll->setWidgetResizable(false);
    scroll->setFrameShape(QFrame::StyledPanel);
    scroll->verticalScrollBar()->setObjectName(QStringLiteral("vScrollPedigree"));
    scroll->horizontalScrollBar()->setObjectName(QStringLiteral("hScrollPedigree"));
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);

    imgBackground = new PedigreeSurface(scroll);
    scroll->setWidget(imgBackground);
    // Where the page is larger than the surface, it reads as one sheet.
    scroll->viewport()->setBackgroundRole(QPalette::Base);
    connect(imgBackground, &PedigreeSurface::mouseMoved, this, &pedigree::imgBackground_MouseMove);

    imgPopup = new PictureBox(imgBackground);
    imgPopup->setObjectName(QStringLiteral("imgPopup"));
    imgPopup->setCursor(Qt::ArrowCursor);
    imgPopup->setLoadLimit(QSize(800, 800));
    imgPopup->hide();

    imgExplore = new QLabel(imgBackground);
    imgExplore->setObjectName(QStringLiteral("imgExplore"));
    imgExplore->setAlignment(Qt::AlignCenter);
    imgExplore->setAttribute(Qt::WA_TransparentForMouseEvents);
    imgExplore->hide();

    for (int k = 0; k < kPedigreeBrackets; ++k) {
        bracket[k] = new PedigreeConnector(k, imgBackground);
        bracket[k]->hide();
    }
    for (int h = 0; h < kPedigreeHeadings; ++h) {
        auto* heading = new QLabel(kHeadings.at(h), imgBackground);
        heading->setObjectName(QStringLiteral("lblAnimal(") + QString::number(h) + QLatin1Char(')'));
        heading->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
        heading->setAttribute(Qt::WA_TransparentForMouseEvents);
        QFont bold = heading->font();
        bold.setBold(true);
        heading->setFont(bold);
        heading->hide();
        lblAnimal[h] = heading;
    }
    for (int i = 0; i < kPedigreeBoxes; ++i) {
        auto* box = new PedigreeBox(i, imgBackground);
        box->hide();
        connect(box, &PedigreeBox::hovered, this, &pedigree::lblCavy_MouseMove);
        connect(box, &PedigreeBox::doubleClicked, this, &pedigree::lblCavy_DblClick);
        lblCavy[i] = box;
    }

    tmrShowPopup = new QTimer(this);
    tmrShowPopup->setObjectName(QStringLiteral("tmrShowPopup"));
    tmrShowPopup->setSingleShot(true);
    tmrShowPopup->setInterval(kPopupDelay);
    connect(tmrShowPopup, &QTimer::timeout, this, &pedigree::tmrShowPopup_Timer);

    setTemplate(settings);
}

pedigree::~pedigree() = default;

double pedigree::dotsPerInch() const { return (logicalDpiY() > 0 ? logicalDpiY() : 96) * fitScale; }

void pedigree::fitToWidth()
{
    // The five-generation sheet is a little wider than the page beside the search pane: it shrinks to fit,
    // down to a limit where the names stay readable; the seven-generation sheet scrolls as it always did.
    fitScale = 1;
    if (generationsShown != 4 || layout.surface.isNull())
        return;
    const int room = scroll->viewport()->width();
    const int wanted = TwipsToPixels(layout.surface.width(), dotsPerInch());
    if (room > 0 && wanted > room)
        fitScale = qMax(0.72, double(room) / wanted);
}

void pedigree::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (generationsShown != 4 || layout.surface.isNull())
        return;
    const double before = fitScale;
    fitToWidth();
    if (qFuzzyCompare(before, fitScale))
        return;
    applyLayout();
    fitColumns();
    placeConnectors();
}

void pedigree::setTemplate(const PrintSettings& s)
{
    settings = s;
    const QFont boxFont = templateFont(s.FontName, s.FontSize, s.FontBold, s.FontItalic);
    for (int i = 1; i < kPedigreeBoxes; ++i)
        lblCavy[i]->setBaseFont(boxFont);
    lblCavy[0]->setBaseFont(templateFont(s.SubjectFontName, s.SubjectFontSize, s.SubjectFontBold, s.SubjectFontItalic));
    const QColor line = ScreenColour(s.LineColour, palette(), Qt::black);
    for (PedigreeConnector* c : bracket)
        c->setLineColour(line);
}

void pedigree::showPedigree(const QString& pstrName, QStringList& family, int limit, PedigreeParent parentForm,
                            int gens, bool showPedigreeDetails)
{
    closePopup();
    const bool formChanged = gens != generationsShown;
    indexLimit = limit;
    ParentForm = parentForm;
    generationsShown = gens;
    details = showPedigreeDetails;
    words = CurrentBoxWords();

    loadBackground();
    LoadPedBrackets();
    ClearPedTree();
    if (!pstrName.isEmpty()) {
        if (generationsShown == 4)
            makeFourGen();
        else
            makeSevenGen();
        indexLimit = layout.indexLimit;
    }

    family.clear();
    FillFamilyTree(pstrName, family, qint16(indexLimit));
    familyArray = family;
    if (!pstrName.isEmpty()) {
        fillPedTreeBoxes();
        FillPedFamily();
    }
    ClearBlanks();
    fitColumns();
    placeConnectors();
    if (formChanged) {
        scroll->horizontalScrollBar()->setValue(0);
        scroll->verticalScrollBar()->setValue(0);
    }
}

void pedigree::loadBackground()
{
    QPixmap picture;
    if (!settings.background.isEmpty())
        picture.load(gImagesFolder + settings.background);
    imgBackground->setPicture(picture);
}

void pedigree::LoadPedBrackets()
{
    // The screen always draws the one connector picture; printouts take the template's.
    if (!screenConnector)
        screenConnector = ConnectorPicture::load(QStringLiteral("Straight Space"));
    for (int k = 1; k < kPedigreeBrackets; ++k)
        bracket[k]->setPicture(screenConnector);
}

void pedigree::ClearPedTree()
{
    for (PedigreeBox* box : lblCavy) {
        box->clear();
        box->setAnimalName(QString());
        box->hide();
    }
    for (PedigreeConnector* c : bracket)
        c->hide();
    for (QLabel* h : lblAnimal)
        h->hide();
    imgPopup->hide();
    imgExplore->hide();
    layout = PedigreeGeometry();
}

void pedigree::makeFourGen()
{
    layout = ::makeFourGen();
    // bracket(0) has a place only here, between the subject and its parents.
    bracket[0]->setPicture(screenConnector);
    applyLayout();
    imgExplore->hide();
}

void pedigree::makeSevenGen()
{
    layout = ::makeSevenGen();
    bracket[0]->setPicture(nullptr);
    applyLayout();
    if (imgExplore->pixmap().isNull()) {
        QSvgRenderer svg(QStringLiteral(":/pedigree/explore.svg"));
        const int side = TwipsToPixels(900, dotsPerInch());
        const qreal ratio = devicePixelRatioF();
        QPixmap pixmap(QSize(side, side) * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        svg.render(&p, QRectF(0, 0, side, side));
        p.end();
        imgExplore->setPixmap(pixmap);
    }
    imgExplore->show();
}

void pedigree::applyLayout()
{
    fitToWidth();
    const double dpi = dotsPerInch();
    for (int i = 0; i < kPedigreeBoxes; ++i) {
        if (!layout.boxes[i].isNull())
            lblCavy[i]->setGeometry(TwipsToPixels(layout.boxes[i], dpi));
    }
    for (int h = 0; h < kPedigreeHeadings; ++h) {
        if (!layout.headings[h].isNull())
            lblAnimal[h]->setGeometry(TwipsToPixels(layout.headings[h], dpi));
    }
    imgPopup->setGeometry(TwipsToPixels(layout.picture, dpi));
    if (!layout.explore.isNull())
        imgExplore->setGeometry(TwipsToPixels(layout.explore, dpi));
    imgBackground->resize(TwipsToPixels(layout.surface.width(), dpi), TwipsToPixels(layout.surface.height(), dpi));
    scroll->verticalScrollBar()->setSingleStep(TwipsToPixels(kScrollStep, dpi));
    scroll->horizontalScrollBar()->setSingleStep(TwipsToPixels(kScrollStep, dpi));
}

void pedigree::fitColumns()
{
    // One size for a whole generation: the largest at which every caption of it fits its box.
    std::array<qreal, 8> points;
    points.fill(0);
    for (int i = 0; i < kPedigreeBoxes; ++i) {
        if (lblCavy[i]->isHidden())
            continue;
        qreal& p = points[GenerationOfBox(i)];
        const qreal fits = lblCavy[i]->fittingPointSize();
        p = p > 0 ? qMin(p, fits) : fits;
    }
    for (int i = 0; i < kPedigreeBoxes; ++i)
        lblCavy[i]->setColumnPointSize(lblCavy[i]->isHidden() ? 0 : points[GenerationOfBox(i)]);
}

void pedigree::placeConnectors()
{
    // A connector covers its place in twips and reaches on to the first line of each box it joins.
    const double dpi = dotsPerInch();
    const int thickness = qMax(1, qRound(dpi / 96.0));
    for (int k = 0; k < kPedigreeBrackets; ++k) {
        PedigreeConnector* c = bracket[k];
        if (c->isHidden() || layout.brackets[k].isNull())
            continue;
        const PedigreeBox* child = lblCavy[k];
        const PedigreeBox* father = lblCavy[2 * k + 1];
        const PedigreeBox* mother = lblCavy[2 * k + 2];
        const int fatherY = father->y() + father->firstLineCentre();
        const int motherY = mother->y() + mother->firstLineCentre();
        const int childY = qBound(fatherY, child->y() + child->firstLineCentre(), motherY);
        QRect r = TwipsToPixels(layout.brackets[k], dpi);
        r.setTop(qMin(r.top(), fatherY - thickness));
        r.setBottom(qMax(r.bottom(), motherY + thickness));
        c->setGeometry(r);
        c->setTargets(fatherY - r.top(), motherY - r.top(), childY - r.top(), !father->isHidden(),
                      !mother->isHidden());
    }
}

void pedigree::fillPedTreeBoxes()
{
    fillFirstBox();
    for (int i = 1; i < kPedigreeBoxes; ++i)
        FillparentBox(familyArray.value(i), i);
}

void pedigree::fillFirstBox()
{
    const QString name = familyArray.value(0);
    PedigreeBox* box = lblCavy[0];
    if (name.isEmpty() || layout.boxes[0].isNull())
        return;
    // The current animal is already loaded; another subject (a print of someone else) is read here.
    const Animal* subject = &gAnimal;
    Animal other;
    if (EncodeText(gAnimal.name).compare(EncodeText(name), Qt::CaseInsensitive) != 0) {
        QString requested = name;
        other.SetCurrentAnimal(requested);
        subject = &other;
    }
    box->setText(FirstBoxText(*subject, settings, words, ParentForm));
    box->setAnimalName(name);
    box->setCaptionColour(ScreenColour(settings.SubjectFontColour, palette(), Qt::black));
    box->show();
    imgPopup->setPicture(subject->picture[0]);
    imgPopup->setVisible(imgPopup->hasPicture());
}

void pedigree::FillparentBox(const QString& name, int BoxNum)
{
    // Boxes the form has no place for stay hidden, as do the nobodies, which have no record.
    if (BoxNum > layout.numPedBoxes || layout.boxes[BoxNum].isNull() || IsNobody(name))
        return;
    const bool namesOnly = ParentForm == PedigreeParent::FamilyTree && !details;
    auto fields = ReadBoxFields(name, settings, namesOnly ? 0 : FieldColumnOfBox(BoxNum));
    if (!fields) {
        // A parent named in PS or PD without a record of its own still shows, by the name it is given.
        fields = BoxFields();
        fields->name = DecodeText(name);
    }
    const BoxCaption caption = FillLabels(BoxNum, *fields, settings, words, ParentForm, details);
    PedigreeBox* box = lblCavy[BoxNum];
    box->setText(caption.text);
    box->setAnimalName(name);
    box->setCaptionColour(caption.champion ? QColor(255, 0, 0) : QColor(0, 0, 0));
    if (caption.shown) {
        box->show();
        CheckBrackets(BoxNum);
    } else {
        box->hide();
    }
}

void pedigree::FillPedFamily()
{
    const QString family = FamilyText(LitterMates(familyArray.value(0), familyArray.value(1), familyArray.value(2)));
    if (family.isEmpty() || lblCavy[0]->isHidden())
        return;
    lblCavy[0]->setText(lblCavy[0]->text() + QLatin1Char('\n') + family);
}

void pedigree::ClearBlanks()
{
    for (QLabel* label : imgBackground->findChildren<QLabel*>()) {
        if (label->text().startsWith(QLatin1Char('.')))
            label->clear();
    }
}

void pedigree::CheckBrackets(int BoxNum)
{
    ShowBrackets(BracketOfBox(BoxNum), HeadingOfBox(BoxNum));
}

void pedigree::ShowBrackets(int bracketIndex, int heading)
{
    if (bracketIndex >= 0 && bracketIndex < kPedigreeBrackets && bracket[bracketIndex]->hasPicture() &&
        !layout.brackets[bracketIndex].isNull())
        bracket[bracketIndex]->show();
    if (heading >= 0 && heading < kPedigreeHeadings && !layout.headings[heading].isNull())
        lblAnimal[heading]->show();
}

frmPopup* pedigree::ensurePopup()
{
    if (!popupForm) {
        popupForm = std::make_unique<frmPopup>();
        // Stacked with the main window, though no child of it.
        popupForm->winId();
        if (window()->windowHandle() && popupForm->windowHandle())
            popupForm->windowHandle()->setTransientParent(window()->windowHandle());
    }
    return popupForm.get();
}

void pedigree::closePopup()
{
    tmrShowPopup->stop();
    hoveredBox = -1;
    if (popupForm)
        popupForm->hide();
}

void pedigree::lblCavy_MouseMove(int index)
{
    if (details) {
        tmrShowPopup->stop();
        return;
    }
    const QString name = lblCavy[index]->animalName();
    if (IsNobody(name))
        return;
    frmPopup* form = ensurePopup();
    if (index != hoveredBox) {
        hoveredBox = index;
        form->hide();
        form->SetPopupAnimal(name);
        tmrShowPopup->start();
    } else if (!form->isVisible()) {
        // The pop-up waits until the mouse rests.
        tmrShowPopup->start();
    }
}

void pedigree::tmrShowPopup_Timer()
{
    if (!popupForm || hoveredBox < 0)
        return;
    const QPoint cursor = QCursor::pos();
    QScreen* at = QGuiApplication::screenAt(cursor);
    if (!at)
        at = screen();
    popupForm->adjustSize();
    const QRect area = at ? at->availableGeometry() : QRect(QPoint(0, 0), popupForm->size() * 4);
    popupForm->move(PopupPosition(cursor, popupForm->size(), area, TwipsToPixels(kPopupOffset, dotsPerInch())));
    popupForm->show();
    popupForm->raise();
}

void pedigree::imgBackground_MouseMove() { closePopup(); }

void pedigree::leaveEvent(QEvent* event)
{
    closePopup();
    QWidget::leaveEvent(event);
}

void pedigree::hideEvent(QHideEvent* event)
{
    closePopup();
    QWidget::hideEvent(event);
}

void pedigree::lblCavy_DblClick(int index)
{
    const QString name = lblCavy[index]->animalName();
    if (IsNobody(name))
        return;
    closePopup();
    emit boxDoubleClicked(DecodeText(name));
}
