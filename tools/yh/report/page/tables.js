// Tables: sorted by a click on any column heading, filtered by a search box,
// one page of rows drawn at a time.
'use strict';

(function (YH) {
  const {el, text} = YH;
  const PAGE_ROWS = 250;

  // A contact's numbers and addresses as [label, value] pairs, whether the
  // answer gives a dictionary (label to value) or a list of {label, value}.
  function properties(record) {
    const list = record.properties;
    if (Array.isArray(list)) {
      return list.filter(Boolean).map(function (p) { return [text(p.label), text(p.value)]; });
    }
    if (list && typeof list === 'object') {
      return Object.keys(list).map(function (label) { return [text(label), text(list[label])]; });
    }
    return [];
  }

  // An incoming call that was not answered.
  function isMissed(record) {
    return record.answered === false && /incoming/i.test(String(record.type));
  }

  function yesNo(value) {
    if (value === true) return 'yes';
    if (value === false) return 'no';
    return text(value);
  }

  // The value a cell sorts and is searched by.
  function cellValue(record, key, how) {
    if (how === 'properties') {
      return properties(record).map(function ([label, value]) { return label + ': ' + value; }).join('\n');
    }
    if (how === 'audio' || how === 'picture') return '';
    if (how === 'deleted') {
      return YH.isDeleted(record) ? [record.deleted_from, record.deleted_date].map(text).filter(Boolean).join(' ') : '';
    }
    if (how === 'file') return YH.fileName(record);
    if (how === 'yes-no') return yesNo(record[key]);
    if (how === 'call-type') return text(record.type) + (isMissed(record) ? ' (missed)' : '');
    // The call's service where the answer has it, else the stored provider.
    if (how === 'service') return text(record.service !== undefined ? record.service : record.network_code);
    const value = record[key];
    return typeof value === 'number' ? value : text(value);
  }

  function compare(a, b) {
    if (typeof a === 'number' && typeof b === 'number') return a - b;
    return String(a).localeCompare(String(b), undefined, {numeric: true});
  }

  function propertiesCell(record) {
    return el('dl', {className: 'properties'}, ...properties(record).flatMap(function ([label, value]) {
      return [el('dt', null, label), el('dd', null, value)];
    }));
  }

  function mediaCell(kind, record, how) {
    const href = YH.fileHref(record.exported_path);
    if (!href) {
      if (how === 'audio') return null;
      return el('span', {className: 'note'}, YH.isMissing(record) ? 'not in the backup' : 'not copied');
    }
    if (how === 'file') return el('a', {href: href}, YH.fileName(record));
    const playable = YH.fileHref(record.preview_path) || (YH.SOUNDS.test(record.exported_path) ? href : null);
    if (!playable) return el('span', {className: 'note'}, 'no player for this file');
    return el('audio', {controls: true, preload: 'none', src: playable});
  }

  // A contact's picture as a small thumbnail (its preview where browsers
  // show no such file) linked to its copy; nothing for a contact without one.
  function pictureCell(record) {
    const href = YH.fileHref(record.exported_path);
    if (!href) return null;
    const shown = YH.fileHref(record.preview_path) || (YH.PICTURES.test(record.exported_path) ? href : null);
    if (!shown) return el('a', {href: href}, YH.fileName(record));
    return el('a', {href: href}, el('img', {src: shown, alt: 'Picture of ' + text(record.name), className: 'avatar',
      loading: 'lazy', decoding: 'async'}));
  }

  function cell(kind, record, key, how, value) {
    if (how === 'link' && YH.isWebAddress(value)) {
      return el('a', {href: value, rel: 'noreferrer noopener', target: '_blank'}, value);
    }
    if (how === 'properties') return propertiesCell(record);
    if (how === 'file' || how === 'audio') return mediaCell(kind, record, how);
    if (how === 'deleted') {
      return YH.isDeleted(record) ? el('span', null, YH.deletedMark(record), ' ' + text(record.deleted_date)) : null;
    }
    if (how === 'picture') return pictureCell(record);
    return el('span', {className: how === 'long' ? 'long' : ''}, String(value));
  }

  // What a row is found by: its cells, and the digits of its numbers.
  function searchTexts(record, columns, values) {
    const numbers = columns.some(function ([, , how]) { return how === 'properties'; })
      ? properties(record).map(function ([, value]) { return YH.digits(value); })
      : values.map(YH.digits);
    return {haystack: values.join('\u0001').toLowerCase(), numbers: numbers.join('\u0001')};
  }

  YH.showTable = function (kind, label, liveColumns, data) {
    const records = Array.isArray(data.records) ? data.records : [];
    // Recovered records say so, where they were found and when they were deleted, in a column of their own.
    const columns = records.some(YH.isDeleted) ? [['deleted_from', 'Recovered', 'deleted']].concat(liveColumns)
      : liveColumns;
    const rows = records.map(function (record) {
      const safe = record && typeof record === 'object' ? record : {};
      const values = columns.map(function ([key, , how]) { return cellValue(safe, key, how); });
      return Object.assign({record: safe, values: values}, searchTexts(safe, columns, values));
    });
    const search = el('input', {type: 'search', placeholder: 'Search ' + label.toLowerCase(), id: 'search'});
    const head = el('tr');
    const body = el('tbody');
    const pager = el('div', {className: 'pager'});
    const state = {column: -1, ascending: true, page: 0, missingOnly: false, deletedOnly: false};
    let kept = rows;
    columns.forEach(function ([key, heading, how], index) {
      const button = el('button', {type: 'button'}, heading);
      const th = el('th', {scope: 'col'}, button);
      th.dataset.key = key;
      if (how === 'audio' || how === 'picture') {
        th.replaceChildren(heading);
      } else {
        button.addEventListener('click', function () {
          state.ascending = state.column === index ? !state.ascending : true;
          state.column = index;
          sortRows();
          draw();
        });
      }
      head.append(th);
    });
    function sortRows() {
      const index = state.column;
      const sign = state.ascending ? 1 : -1;
      kept.sort(function (a, b) { return sign * compare(a.values[index], b.values[index]); });
      head.querySelectorAll('th').forEach(function (th, i) {
        if (i === index) th.setAttribute('aria-sort', state.ascending ? 'ascending' : 'descending');
        else th.removeAttribute('aria-sort');
      });
    }
    function filter() {
      const wanted = YH.query(search);
      kept = rows.filter(function (row) {
        return YH.matches(wanted, row.haystack, row.numbers) && (!state.missingOnly || YH.isMissing(row.record)) &&
            (!state.deletedOnly || YH.isDeleted(row.record));
      });
      if (state.column >= 0) sortRows();
      state.page = 0;
      draw();
    }
    function draw() {
      const from = state.page * PAGE_ROWS;
      body.replaceChildren(...kept.slice(from, from + PAGE_ROWS).map(function (row) {
        const tr = el('tr', null, ...columns.map(function ([key, , how], i) {
          return el('td', null, cell(kind, row.record, key, how, row.values[i]));
        }));
        if (kind === 'calls' && isMissed(row.record)) tr.className = 'missed';
        if (YH.isMissing(row.record)) tr.classList.add('no-file');
        if (YH.isDeleted(row.record)) tr.classList.add('deleted');
        return tr;
      }));
      YH.drawPager(pager, state.page, kept.length, PAGE_ROWS, function (next) { state.page = next; draw(); });
    }
    search.addEventListener('input', filter);
    kept = rows.slice();
    draw();
    const missing = YH.missingNote(records, label, function (only) { state.missingOnly = only; filter(); });
    const recovered = YH.filterNote(records, YH.isDeleted, label.toLowerCase() + ' were recovered from deleted data.',
        'recovered', function (only) { state.deletedOnly = only; filter(); });
    YH.show(el('h1', null, label), missing, recovered, el('div', {className: 'tools'}, search),
        el('div', {className: 'scroll'}, el('table', {id: 'table'}, el('thead', null, head), body)), pager);
  };

  // "2 of 5 have no file in the backup", with a box that keeps only those;
  // null when every record's file is there or the kind has no files.
  YH.missingNote = function (records, label, keepOnly) {
    return YH.filterNote(records, YH.isMissing, label.toLowerCase() + ' have no file in the backup.', 'missing',
        keepOnly);
  };
})(window.YH);
