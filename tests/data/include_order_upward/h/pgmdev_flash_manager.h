// Fixture: a public header.
#pragma once
