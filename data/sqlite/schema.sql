-- The suite's tables that the program reads and writes, for the embedded engine.
-- Text columns compare without regard to case and have limits, as the production server's do.

PRAGMA journal_mode = WAL;

-- Well-known application ports; System = 1 marks those that the system defined.
CREATE TABLE ServicePorts (
  Port        INTEGER PRIMARY KEY,
  ServiceName NVARCHAR(255) COLLATE NOCASE
    CONSTRAINT "ServiceName is longer than 255 characters" CHECK (length(ServiceName) <= 255),
  System      INTEGER NOT NULL DEFAULT 0,
  Enabled     INTEGER NOT NULL DEFAULT 1
);

-- Named IPv4 ranges; an address a.b.c.d is stored as a*1000^3 + b*1000^2 + c*1000 + d.
CREATE TABLE IPAddressGroups (
  IPAddressGroupID   INTEGER PRIMARY KEY AUTOINCREMENT,
  IPRangeStart       INTEGER,
  IPRangeEnd         INTEGER,
  IPAddressGroupName NVARCHAR(255) COLLATE NOCASE
    CONSTRAINT "IPAddressGroupName is longer than 255 characters" CHECK (length(IPAddressGroupName) <= 255),
  System             INTEGER NOT NULL DEFAULT 0,
  Enabled            INTEGER NOT NULL DEFAULT 1
);
CREATE INDEX IPAddressGroupsByStart ON IPAddressGroups (IPRangeStart);

-- Every endpoint that was seen, with the group it belongs to (0: none).
CREATE TABLE FlowCorrelation (
  IPAddress        NVARCHAR(15) COLLATE NOCASE NOT NULL
    CONSTRAINT "IPAddress is longer than 15 characters" CHECK (length(IPAddress) <= 15),
  IPAddressSort    INTEGER NOT NULL,
  FullHostname     NVARCHAR(255) COLLATE NOCASE
    CONSTRAINT "FullHostname is longer than 255 characters" CHECK (length(FullHostname) <= 255),
  IPAddressGroupID INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX FlowCorrelationByAddress ON FlowCorrelation (IPAddressSort);
CREATE INDEX FlowCorrelationByGroup ON FlowCorrelation (IPAddressGroupID);

-- One row for each computer that runs a NetFlow receiver.
CREATE TABLE FlowEngines (
  ServerName  NVARCHAR(255) COLLATE NOCASE PRIMARY KEY
    CONSTRAINT "ServerName is longer than 255 characters" CHECK (length(ServerName) <= 255),
  NetFlowPort INTEGER
);

CREATE TABLE Nodes (
  NodeID  INTEGER PRIMARY KEY,
  Caption NVARCHAR(255) COLLATE NOCASE
    CONSTRAINT "Caption is longer than 255 characters" CHECK (length(Caption) <= 255)
);

CREATE TABLE Interfaces (
  InterfaceID INTEGER PRIMARY KEY,
  NodeID      INTEGER NOT NULL,
  Caption     NVARCHAR(255) COLLATE NOCASE
    CONSTRAINT "Caption is longer than 255 characters" CHECK (length(Caption) <= 255)
);
CREATE INDEX InterfacesByNode ON Interfaces (NodeID);

-- One row for each interface whose NetFlow exports are accepted.
CREATE TABLE NetFlowSources (
  InterfaceID INTEGER PRIMARY KEY
);

CREATE TABLE GlobalSettings (
  Name  NVARCHAR(255) COLLATE NOCASE PRIMARY KEY
    CONSTRAINT "Name is longer than 255 characters" CHECK (length(Name) <= 255),
  Value TEXT
);
