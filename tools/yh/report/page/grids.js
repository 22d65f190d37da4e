// Grids of photos and attachments: pictures as lazily loaded thumbnails,
// videos that play in place, other files as linked tiles; searched by name
// and date, in date order with a heading per month, one page at a time.
'use strict';

(function (YH) {
  const {el, text} = YH;
  const PAGE_TILES = 240;
  const ORDERS = [['newest', 'Newest first'], ['oldest', 'Oldest first'], ['stored', 'As stored']];

  function dateOf(record) {
    return text(record.date || record.creation_date);
  }

  // "2023-09" of a date, the heading its tiles stand under.
  function monthOf(record) {
    const match = /^(\d{4})-(\d{2})/.exec(dateOf(record));
    return match ? match[1] + '-' + match[2] : '';
  }

  function monthHeading(month) {
    if (!month) return 'No date';
    const [year, number] = month.split('-').map(Number);
    return new Date(Date.UTC(year, number - 1, 1)).toLocaleString('en', {month: 'long', year: 'numeric',
      timeZone: 'UTC'});
  }

  function isPicture(record) {
    return YH.PICTURES.test(record.exported_path) || Boolean(YH.fileHref(record.preview_path));
  }

  // The tile of one record: what its copy is, linked to the copy.
  YH.tile = function (record) {
    const name = YH.fileName(record);
    const caption = el('figcaption', null, el('span', {className: 'name', title: name}, name),
        el('span', {className: 'date'}, dateOf(record)));
    const href = YH.fileHref(record.exported_path);
    if (!href) {
      const why = YH.isMissing(record) ? 'not in the backup' : 'not copied';
      return el('figure', {className: 'tile missing'}, el('div', {className: 'box'}, why), caption);
    }
    const extension = (record.exported_path.match(/\.([^./]{1,8})$/) || ['', 'file'])[1].toUpperCase();
    if (YH.VIDEOS.test(record.exported_path)) {
      const video = el('video', {controls: true, preload: 'metadata', src: href});
      return el('figure', {className: 'tile video'}, el('div', {className: 'box'}, video),
          el('figcaption', null, el('a', {href: href, className: 'name'}, name), el('span', {className: 'date'},
              dateOf(record))));
    }
    const link = el('a', {href: href, className: 'box'});
    if (isPicture(record)) {
      const thumbnail = YH.fileHref(record.preview_path) || href;
      const picture = el('img', {src: thumbnail, alt: name, loading: 'lazy', decoding: 'async'});
      picture.addEventListener('error', function () { link.replaceChildren(extension); });
      link.append(picture);
    } else {
      link.append(extension);
    }
    return el('figure', {className: 'tile'}, link, caption);
  };

  YH.showGrid = function (kind, label, data) {
    const records = (Array.isArray(data.records) ? data.records : []).filter(function (record) {
      return record && typeof record === 'object';
    });
    const items = records.map(function (record, index) {
      const searched = [YH.fileName(record), record.original_name, record.file_name, dateOf(record),
        record.mime_type].map(text).join('\u0001').toLowerCase();
      return {record: record, index: index, searched: searched};
    });
    const search = el('input', {type: 'search', placeholder: 'Search ' + label.toLowerCase() + ' by name or date',
      id: 'search'});
    const order = el('select', {id: 'order'}, ...ORDERS.map(function ([value, title]) {
      return el('option', {value: value}, title);
    }));
    order.setAttribute('aria-label', 'Order');
    const grid = el('div', {className: 'grid', id: 'grid'});
    const pager = el('div', {className: 'pager'});
    const state = {page: 0, missingOnly: false};
    let kept = items;
    function select() {
      const wanted = search.value.trim().toLowerCase();
      kept = items.filter(function (item) {
        return (!wanted || item.searched.includes(wanted)) && (!state.missingOnly || YH.isMissing(item.record));
      });
      if (order.value !== 'stored') {
        kept.sort(YH.byDate(order.value === 'newest', function (item) { return dateOf(item.record); }));
      }
      state.page = 0;
      draw();
    }
    function draw() {
      const from = state.page * PAGE_TILES;
      const nodes = [];
      let month = null;
      for (const item of kept.slice(from, from + PAGE_TILES)) {
        const itsMonth = monthOf(item.record);
        if (order.value !== 'stored' && itsMonth !== month) {
          month = itsMonth;
          nodes.push(el('h2', {className: 'month'}, monthHeading(month)));
        }
        nodes.push(YH.tile(item.record));
      }
      grid.replaceChildren(...nodes);
      YH.drawPager(pager, state.page, kept.length, PAGE_TILES, function (next) {
        state.page = next;
        draw();
        grid.scrollIntoView();
      });
    }
    search.addEventListener('input', select);
    order.addEventListener('change', select);
    select();
    const missing = YH.missingNote(records, label, function (only) { state.missingOnly = only; select(); });
    YH.show(el('h1', null, label), missing, el('div', {className: 'tools'}, search, order), grid, pager);
  };
})(window.YH);
