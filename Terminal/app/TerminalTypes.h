#pragma once

#include "CatalogueDesk.h"
#include "DeviceDesk.h"
#include "GlassScale.h"
#include "MapLines.h"
#include "OfferDesk.h"
#include "PaperDesk.h"
#include "Presentation.h"
#include "StopLabels.h"
#include "Terminal.h"
#include "TileDesk.h"
#include "TripDesk.h"

#include <CardDesk.h>
#include <DriverDesk.h>
#include <FleetSimulator.h>
#include <SalesDesk.h>
#include <Sounds.h>
#include <TripContext.h>

#include <QObject>
#include <QtQml>

// The types of the import Rivo.Terminal 1.0: each declaration gives a class its QML name. Both the
// registration with the engine and what qmllint knows of them are generated from these. QML makes
// StopLabels, MapLines and the one GlassScale, the terminal all others.

#define RIVO_TERMINAL_TYPE(TYPE, NAME)                                                             \
    Q_GADGET                                                                                       \
    QML_FOREIGN(TYPE)                                                                              \
    QML_NAMED_ELEMENT(NAME)                                                                        \
    QML_UNCREATABLE("is made by the terminal, not by QML")

struct TerminalType
{
    RIVO_TERMINAL_TYPE(rivo::terminal::Terminal, Terminal)
};

struct CardDeskType
{
    RIVO_TERMINAL_TYPE(rivo::sales::CardDesk, CardDesk)
};

struct CatalogueDeskType
{
    RIVO_TERMINAL_TYPE(rivo::terminal::CatalogueDesk, CatalogueDesk)
};

struct DeviceDeskType
{
    RIVO_TERMINAL_TYPE(rivo::terminal::DeviceDesk, DeviceDesk)
};

struct GlassScaleType
{
    Q_GADGET
    QML_FOREIGN(rivo::terminal::GlassScale)
    QML_NAMED_ELEMENT(GlassScale)
    QML_SINGLETON
};

struct OfferDeskType
{
    RIVO_TERMINAL_TYPE(rivo::terminal::OfferDesk, OfferDesk)
};

struct DriverDeskType
{
    RIVO_TERMINAL_TYPE(rivo::drivers::DriverDesk, DriverDesk)
};

struct PaperDeskType
{
    RIVO_TERMINAL_TYPE(rivo::terminal::PaperDesk, PaperDesk)
};

struct PresentationType
{
    RIVO_TERMINAL_TYPE(rivo::terminal::Presentation, Presentation)
};

struct MapLinesType
{
    Q_GADGET
    QML_FOREIGN(rivo::terminal::MapLines)
    QML_NAMED_ELEMENT(MapLines)
};

struct StopLabelsType
{
    Q_GADGET
    QML_FOREIGN(rivo::terminal::StopLabels)
    QML_NAMED_ELEMENT(StopLabels)
};

struct TileDeskType
{
    RIVO_TERMINAL_TYPE(rivo::terminal::TileDesk, TileDesk)
};

struct TripDeskType
{
    RIVO_TERMINAL_TYPE(rivo::terminal::TripDesk, TripDesk)
};

struct TripContextType
{
    RIVO_TERMINAL_TYPE(rivo::feed::TripContext, TripContext)
};

struct FleetSimulatorType
{
    RIVO_TERMINAL_TYPE(rivo::fleet::FleetSimulator, FleetSimulator)
};

struct SalesDeskType
{
    RIVO_TERMINAL_TYPE(rivo::sales::SalesDesk, SalesDesk)
};

struct SoundsType
{
    RIVO_TERMINAL_TYPE(rivo::sound::Sounds, Sounds)
};
