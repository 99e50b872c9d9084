#pragma once
#define IDR_PAGE_HOOKS 201
